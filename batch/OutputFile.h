#pragma once

// Files the command reads and writes: an input must be a file that exists; an output never goes over the
// input and is never half-written. The text goes to a temporary file
// beside the target that is renamed when complete, so a failure leaves an existing file untouched.

#include <design/InputError.h>

#include <condition_variable>
#include <memory>
#include <mutex>
#include <ostream>
#include <string>
#include <string_view>
#include <thread>

namespace batch {

using design::InputError;

// InputError, named after the command, for an input that is a directory or does not exist ("-": standard
// input, nothing to check).
void checkInputFile(std::string_view command, const std::string& file);

// True when both names are the same existing file (device and inode; links followed).
bool sameFile(const std::string& a, const std::string& b);

// InputError naming the option when `path` is a directory, a device, a pipe or a socket, or the same file
// as `input` ("": none; "-": the file standard input is redirected from, if any).
void checkOutputPath(std::string_view option, const std::string& path, const std::string& input);

// Writes text to path as StreamedOutputFile does; InputError naming the option when it cannot.
void writeFileAtomically(std::string_view option, const std::string& path, std::string_view text);

// Every file the tools write: the text goes to a temporary of a name of its own beside the file (created
// new, never through a link), which is flushed to the disk and replaces the file at once by commit();
// destroyed without a commit (an error, an interrupted run), it removes the temporary and leaves the file
// as it was. A symbolic link is written through (the file it names is replaced, the link stays); an
// existing file keeps its mode and is locked (flock) until replaced, so a second run writing it is
// refused; a device, a pipe or a socket is refused, never replaced. As the text grows, a thread of its own
// asks the kernel to write back the pages written so far: the replacing rename would otherwise start the
// write-back of the whole file itself (ext4 does so when a rename replaces a file), and the command would
// wait for it at its end.
class StreamedOutputFile {
public:
    // InputError naming the option when the temporary cannot be created.
    StreamedOutputFile(std::string_view option, const std::string& path);
    ~StreamedOutputFile();
    StreamedOutputFile(const StreamedOutputFile&) = delete;
    StreamedOutputFile& operator=(const StreamedOutputFile&) = delete;

    std::ostream& stream() { return *stream_; }
    // The text written so far may go to the disk (called by the thread that writes the stream).
    void written();
    // The text complete: the temporary replaces path; InputError naming the option when it cannot.
    void commit();
    // The temporary removed, path untouched.
    void discard() noexcept;
    // The temporary's name (for the tests).
    const std::string& temporary() const;

private:
    void startWriteBack();
    void stopWriteBack() noexcept;
    void releaseLock() noexcept;

    std::string option_, path_, target_, temporary_;
    int fd_ = -1;
    int lock_ = -1;
    std::unique_ptr<std::streambuf> buffer_;
    std::unique_ptr<std::ostream> stream_;
    bool open_ = false;
    std::mutex mutex_;
    std::condition_variable wake_;
    bool pending_ = false, stopping_ = false;
    std::thread writeBack_;
};

} // namespace batch
