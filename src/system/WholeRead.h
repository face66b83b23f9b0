#pragma once

#include <cstddef>
#include <string>

namespace kd {

/// Reads an open file of about `size` bytes from where it stands to its end; what `bytes` held before is
/// gone. `read` takes where to put bytes, how many at most, and a count of those that came, which is 0 at the
/// end alone; it returns 0 or a code of the system's. Returns 0 or that code, with no bytes then.
template <typename Read>
auto ReadWhole(Read read, std::size_t size, std::string& bytes) {
    // One byte more than the file has: a read that fills all but that one has met the end.
    std::size_t filled = 0;
    bytes.resize(size + 1);
    for (;;) {
        if (filled == bytes.size()) {
            bytes.resize(bytes.size() * 2);  // the file grew meanwhile
        }
        std::size_t got = 0;
        const auto code = read(bytes.data() + filled, bytes.size() - filled, got);
        if (code != 0) {
            bytes.clear();
            return code;
        }
        filled += got;
        if (got == 0 || (filled == size && filled + 1 == bytes.size())) {
            bytes.resize(filled);
            return code;
        }
    }
}

}  // namespace kd
