#include "OutputFile.h"

#include <ext/stdio_filebuf.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <vector>

namespace batch {

void checkInputFile(std::string_view command, const std::string& file)
{
    if (file == "-") return;
    const std::string name(command);
    std::error_code ec;
    const auto status = std::filesystem::status(file, ec);
    if (std::filesystem::is_directory(status))
        throw InputError(name + ": '" + file + "' is a directory; give a CSV or JSON Lines file");
    if (ec || !std::filesystem::exists(status)) throw InputError(name + ": the file '" + file + "' does not exist");
}

bool sameFile(const std::string& a, const std::string& b)
{
    struct stat sa {}, sb {};
    if (stat(a.c_str(), &sa) != 0 || stat(b.c_str(), &sb) != 0) return false;
    return sa.st_dev == sb.st_dev && sa.st_ino == sb.st_ino;
}

namespace {

// The file a name writes to: through a symbolic link to the file it names (the link stays a link), else
// the name itself.
std::string targetOf(const std::string& path)
{
    std::error_code ec;
    if (!std::filesystem::is_symlink(std::filesystem::symlink_status(path, ec))) return path;
    const std::filesystem::path resolved = std::filesystem::weakly_canonical(path, ec);
    return ec ? path : resolved.string();
}

// What an existing name is, for the output: 0 when it is a regular file or does not exist, else the
// reason it cannot take a file's place.
const char* notAFile(const std::string& path)
{
    struct stat st {};
    if (::stat(path.c_str(), &st) != 0) return nullptr;
    if (S_ISDIR(st.st_mode)) return "is a directory";
    if (!S_ISREG(st.st_mode)) return "is not a regular file (a device, a pipe or a socket); give a file name, or - for standard output";
    return nullptr;
}

} // namespace

void checkOutputPath(std::string_view option, const std::string& path, const std::string& input)
{
    const std::string name(option);
    if (path.empty()) throw InputError(name + ": a file name is needed");
    if (!input.empty() && input != "-" && sameFile(input, path))
        throw InputError(name + ": '" + path + "' is the input file; it would be overwritten");
    if (input == "-") {
        // Standard input redirected from the very file: `batch - --out model.csv < model.csv`.
        struct stat in {}, out {};
        if (::fstat(STDIN_FILENO, &in) == 0 && ::stat(path.c_str(), &out) == 0 && in.st_dev == out.st_dev &&
            in.st_ino == out.st_ino)
            throw InputError(name + ": '" + path + "' is the file on standard input; it would be overwritten");
    }
    if (const char* why = notAFile(path)) throw InputError(name + ": '" + path + "' " + why);
}

void writeFileAtomically(std::string_view option, const std::string& path, std::string_view text)
{
    StreamedOutputFile file(option, path);
    file.stream().write(text.data(), static_cast<std::streamsize>(text.size()));
    file.commit();
}

StreamedOutputFile::StreamedOutputFile(std::string_view option, const std::string& path)
    : option_(option), path_(path), target_(targetOf(path))
{
    if (const char* why = notAFile(target_)) throw InputError(option_ + ": '" + path_ + "' " + why);
    // Another run writing the same file is refused, not mixed with: a lock on the existing file, held
    // until the new one replaces it.
    struct stat existing {};
    const bool exists = ::stat(target_.c_str(), &existing) == 0;
    if (exists) {
        lock_ = ::open(target_.c_str(), O_RDONLY | O_CLOEXEC);
        if (lock_ >= 0 && ::flock(lock_, LOCK_EX | LOCK_NB) != 0) {
            ::close(lock_);
            lock_ = -1;
            throw InputError(option_ + ": '" + path_ + "' is being written by another run");
        }
    }
    // A temporary of a name of its own beside the file (mkostemp: created, never an existing file or a
    // link), with the file's mode when it exists, else that of a new file (0666 less the umask).
    const std::filesystem::path target(target_);
    const std::filesystem::path dir = target.parent_path();
    std::string hidden(1, '.');
    hidden.append(target.filename().string()).append(".XXXXXX");
    const std::string pattern = (dir / hidden).string();
    std::vector<char> name(pattern.begin(), pattern.end());
    name.push_back('\0');
    fd_ = ::mkostemp(name.data(), O_CLOEXEC);
    if (fd_ < 0) {
        releaseLock();
        throw InputError(option_ + ": cannot write '" + path_ + "'");
    }
    temporary_ = name.data();
    mode_t mode = existing.st_mode & 07777;
    if (!exists) {
        const mode_t mask = ::umask(0);
        ::umask(mask);
        mode = 0666 & ~mask;
    }
    ::fchmod(fd_, mode);
    open_ = true;
    try {
        // The buffer owns the descriptor from here on and closes it.
        buffer_ = std::make_unique<__gnu_cxx::stdio_filebuf<char>>(fd_, std::ios::out | std::ios::binary, 1 << 16);
        stream_ = std::make_unique<std::ostream>(buffer_.get());
        startWriteBack();
    } catch (...) {  // no memory or no thread: nothing is left behind
        if (!buffer_) ::close(fd_);
        discard();
        throw;
    }
}

void StreamedOutputFile::startWriteBack()
{
    writeBack_ = std::thread([this] {
        std::unique_lock<std::mutex> lock(mutex_);
        for (;;) {
            wake_.wait(lock, [this] { return pending_ || stopping_; });
            if (stopping_) return;
            pending_ = false;
            lock.unlock();
            // Starts the write-back of the dirty pages (it does not wait for the disk); only a hint, so a
            // failure (a pipe, a device) changes nothing.
            ::sync_file_range(fd_, 0, 0, SYNC_FILE_RANGE_WRITE);
            lock.lock();
        }
    });
}

StreamedOutputFile::~StreamedOutputFile() { discard(); }

void StreamedOutputFile::written()
{
    stream_->flush();
    {
        std::lock_guard<std::mutex> lock(mutex_);
        pending_ = true;
    }
    wake_.notify_one();
}

void StreamedOutputFile::stopWriteBack() noexcept
{
    if (!writeBack_.joinable()) return;
    {
        std::lock_guard<std::mutex> lock(mutex_);
        stopping_ = true;
    }
    wake_.notify_one();
    writeBack_.join();
}

void StreamedOutputFile::commit()
{
    stopWriteBack();
    stream_->flush();
    const bool flushed = static_cast<bool>(*stream_);
    // On the disk before it takes the file's place: a crash leaves the old file or the new one, whole.
    const bool synced = flushed && ::fdatasync(fd_) == 0;
    const bool closed = static_cast<__gnu_cxx::stdio_filebuf<char>&>(*buffer_).close() != nullptr;
    std::error_code ec;
    if (synced && closed) std::filesystem::rename(temporary_, target_, ec);
    if (!synced || !closed || ec) {
        discard();
        throw InputError(option_ + ": cannot write '" + path_ + "'");
    }
    open_ = false;
    releaseLock();
}

void StreamedOutputFile::releaseLock() noexcept
{
    if (lock_ >= 0) ::close(lock_);
    lock_ = -1;
}

void StreamedOutputFile::discard() noexcept
{
    stopWriteBack();
    releaseLock();
    if (!open_) return;
    open_ = false;
    if (buffer_) static_cast<__gnu_cxx::stdio_filebuf<char>&>(*buffer_).close();
    std::error_code ignored;
    std::filesystem::remove(temporary_, ignored);
}

const std::string& StreamedOutputFile::temporary() const { return temporary_; }

} // namespace batch
