#pragma once

#include <string>

// Addresses of the web, many of which come from servers: only what is one is loaded or opened. All from any thread.

namespace lamina {

/// Whether it is an absolute http or https URL with a host, of a length that programs take.
bool isWebAddress(const std::string& url);

/// The host of such a URL, in the letters that browsers ask for it with, so that none of another script can pass for
/// it; empty for what is none.
std::string webHost(const std::string& url);

/// What an address is called in messages: without credentials, query and fragment, of which each may be secret, and not
/// longer than 200 characters.
std::string shownAddress(const std::string& url);

} // namespace lamina
