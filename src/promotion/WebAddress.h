#pragma once

#include <string>

/// Links that come from a server: only what leads to a page of the web is followed.
namespace lamina {

/// Whether it is an absolute http or https URL with a host, of a length that programs take. From any thread.
bool isWebAddress(const std::string& url);

/// The host of such a URL, in the letters that browsers ask for it with, so that none of another script can pass for
/// it; empty for what is none. From any thread.
std::string webHost(const std::string& url);

} // namespace lamina
