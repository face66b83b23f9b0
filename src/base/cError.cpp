#include "base/cError.h"

#include <new>

namespace kd {

Text ErrorText(std::int32_t number) {
    switch (number) {
        case errInvalidArgument:
            return "Invalid procedure call or argument";
        case errOverflow:
            return "Overflow";
        case errOutOfMemory:
            return "Out of memory";
        case errSubscript:
            return "Subscript out of range";
        case errTypeMismatch:
            return "Type mismatch";
        case errFileNotFound:
            return "File not found";
        case errFileAlreadyOpen:
            return "File already open";
        case errDevice:
            return "Device I/O error";
        case errDiskFull:
            return "Disk full";
        case errPermissionDenied:
            return "Permission denied";
        case errPathNotFound:
            return "Path not found";
        default:
            return "Application-defined or object-defined error";
    }
}

cError::cError(std::int32_t number, Text source, Text description, Text path)
    : std::runtime_error(source + ": " + (description.empty() ? ErrorText(number) : description)),
      m_number(number),
      m_source(std::move(source)),
      m_description(description.empty() ? ErrorText(number) : std::move(description)),
      m_path(std::move(path)) {}

cError AsError(const std::exception& failure, Text source) {
    if (const auto* const error = dynamic_cast<const cError*>(&failure)) {
        return *error;
    }
    if (dynamic_cast<const std::bad_alloc*>(&failure) != nullptr) {
        return {errOutOfMemory, std::move(source)};
    }
    return {errInvalidArgument, std::move(source), failure.what()};
}

}  // namespace kd
