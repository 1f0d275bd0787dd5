#include "platform/base/ExceptionCause.h"

#include "platform/base/Causes.h"

#include <exception>
#include <new>
#include <stdexcept>
#include <system_error>

namespace lamina {

std::string causeOfException()
{
    if (!std::current_exception())
        return cause::kUnknown;
    try {
        throw;
    } catch (const std::bad_alloc&) {
        return cause::kNoMemory;
    } catch (const std::length_error&) { // more than any container holds
        return cause::kNoMemory;
    } catch (const std::system_error& error) {
        return error.code() == std::errc::resource_unavailable_try_again ? cause::kNoThread : error.code().message();
    } catch (const std::exception& error) {
        return error.what();
    } catch (...) {
        return cause::kUnknown;
    }
}

} // namespace lamina
