#include "DiskFiles.h"

#include <cstdio>
#include <filesystem>
#include <stdexcept>

namespace kd::bench {

namespace {

namespace fs = std::filesystem;

struct CloseFile {
    void operator()(std::FILE* file) const noexcept { (void)std::fclose(file); }
};
using FilePointer = std::unique_ptr<std::FILE, CloseFile>;

FilePointer Open(std::string_view path, const char* mode) {
    FilePointer file(std::fopen(Text(path).c_str(), mode));
    if (!file) {
        throw std::runtime_error("cannot open " + Text(path));
    }
    return file;
}

class Output : public OutputFile {
public:
    explicit Output(FilePointer file) : m_file(std::move(file)) {}
    void Write(std::string_view bytes) override {
        Expect(std::fwrite(bytes.data(), 1, bytes.size(), m_file.get()) == bytes.size());
    }
    void Flush() override { Expect(std::fflush(m_file.get()) == 0); }
    void Close() override {
        if (m_file) {
            Expect(std::fclose(m_file.release()) == 0);
        }
    }

private:
    static void Expect(bool worked) {
        if (!worked) {
            throw std::runtime_error("cannot write");
        }
    }
    FilePointer m_file;
};

[[noreturn]] void NotNeeded() {
    throw std::logic_error("an operation that the benchmark's disk does not have");
}

}  // namespace

bool DiskFiles::Exists(std::string_view path) {
    return fs::exists(path);
}

bool DiskFiles::IsRegularFile(std::string_view path) {
    return fs::is_regular_file(path);
}

std::string DiskFiles::Read(std::string_view path) {
    std::string bytes;
    Read(path, bytes);
    return bytes;
}

void DiskFiles::Read(std::string_view path, std::string& bytes) {
    const FilePointer file = Open(path, "rb");
    bytes.resize(static_cast<std::size_t>(fs::file_size(path)));
    (void)std::setvbuf(file.get(), nullptr, _IONBF, 0);  // read whole; the buffer would be a detour
    if (std::fread(bytes.data(), 1, bytes.size(), file.get()) != bytes.size()) {
        throw std::runtime_error("cannot read " + Text(path));
    }
}

std::unique_ptr<OutputFile> DiskFiles::OpenForOutput(std::string_view path) {
    return std::make_unique<Output>(Open(path, "wb"));
}

void DiskFiles::CopyFile(std::string_view source, std::string_view target) {
    fs::copy_file(source, target, fs::copy_options::overwrite_existing);
}

void DiskFiles::DeleteFile(std::string_view path) {
    fs::remove(path);
}

std::unique_ptr<OutputFile> DiskFiles::OpenForAppend(std::string_view /*path*/) {
    NotNeeded();
}
void DiskFiles::ReplaceFile(std::string_view /*path*/, std::string_view /*bytes*/) {
    NotNeeded();
}
std::vector<Text> DiskFiles::FolderEntries(std::string_view /*folder*/) {
    NotNeeded();
}
void DiskFiles::MakeFolder(std::string_view /*folder*/) {
    NotNeeded();
}
void DiskFiles::CopyForArchive(std::string_view /*source*/, std::string_view /*target*/) {
    NotNeeded();
}
void DiskFiles::Rename(std::string_view /*from*/, std::string_view /*to*/) {
    NotNeeded();
}
void DiskFiles::FlushFolder(std::string_view /*folder*/) {
    NotNeeded();
}
void DiskFiles::RemoveFolder(std::string_view /*folder*/) {
    NotNeeded();
}

}  // namespace kd::bench
