#pragma once

#include <string_view>

namespace lamina {

/// Sees to it that the descriptors 0 to 2 are taken: where a process was started without one of them, a picture that is
/// opened would become its standard output. What takes their place can be neither read nor written, so that whoever
/// uses it hears of an error. To be called before any file is opened.
void openStandardStreams();

/// Keeps standard error for the lines of this program: those that libraries write there by themselves lead nowhere from
/// now on, and what the processes write that it starts. Once, before there are other threads. Does nothing where no
/// further descriptor is to be had.
void keepStandardErrorToOurselves();
/// Takes that back, for a program that takes this one's place.
void shareStandardErrorAgain();

/// Where our own lines go: standard error, or what it was before it was kept to ourselves.
int messageDescriptor();

/// Writes all of the text there, in one piece where that is possible, so that processes on the same terminal don't cut
/// in. From any thread; safe in a signal handler. There is nobody to be told that it can't be written.
void writeMessage(std::string_view text) noexcept;

} // namespace lamina
