#include "OutputFile.h"


#include <ext/stdio_filebuf.h>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sys/stat.h>
#include <unistd.h>

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

void checkOutputPath(std::string_view option, const std::string& path, const std::string& input)
{
    const std::string name(option);
    if (path.empty()) throw InputError(name + ": a file name is needed");
    if (!input.empty() && input != "-" && sameFile(input, path))
        throw InputError(name + ": '" + path + "' is the input file; it would be overwritten");
    if (std::filesystem::is_directory(path)) throw InputError(name + ": '" + path + "' is a directory");
}

void writeFileAtomically(std::string_view option, const std::string& path, std::string_view text)
{
    const std::string name(option), temporary = path + ".part";
    {
        std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
        if (out) out.write(text.data(), static_cast<std::streamsize>(text.size()));
        out.close();
        if (!out) {
            std::error_code ignored;
            std::filesystem::remove(temporary, ignored);
            throw InputError(name + ": cannot write '" + path + "'");
        }
    }
    std::error_code ec;
    std::filesystem::rename(temporary, path, ec);
    if (ec) {
        std::filesystem::remove(temporary, ec);
        throw InputError(name + ": cannot write '" + path + "'");
    }
}

StreamedOutputFile::StreamedOutputFile(std::string_view option, const std::string& path)
    : option_(option), path_(path), temporary_(path + ".part")
{
    fd_ = ::open(temporary_.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (fd_ < 0) throw InputError(option_ + ": cannot write '" + path_ + "'");
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
    const bool closed = static_cast<__gnu_cxx::stdio_filebuf<char>&>(*buffer_).close() != nullptr;
    std::error_code ec;
    if (flushed && closed) std::filesystem::rename(temporary_, path_, ec);
    if (!flushed || !closed || ec) {
        discard();
        throw InputError(option_ + ": cannot write '" + path_ + "'");
    }
    open_ = false;
}

void StreamedOutputFile::discard() noexcept
{
    stopWriteBack();
    if (!open_) return;
    open_ = false;
    if (buffer_) static_cast<__gnu_cxx::stdio_filebuf<char>&>(*buffer_).close();
    std::error_code ignored;
    std::filesystem::remove(temporary_, ignored);
}

} // namespace batch
