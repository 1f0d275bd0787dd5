"""What the checkers of the sources share."""
