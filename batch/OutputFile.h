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

// InputError naming the option when `path` is a directory or the same file as `input` ("" or "-": none).
void checkOutputPath(std::string_view option, const std::string& path, const std::string& input);

// Writes text to path through path + ".part" and a rename; InputError naming the option when it cannot.
void writeFileAtomically(std::string_view option, const std::string& path, std::string_view text);

// A large output written as a stream: the text goes to path + ".part", which replaces path at once by
// commit(); destroyed without a commit (an error, an interrupted run), it removes the temporary and leaves
// path as it was. As the text grows, a thread of its own asks the kernel to write back the pages written
// so far: the replacing rename would otherwise start the write-back of the whole file itself (ext4 does so
// when a rename replaces a file), and the command would wait for it at its end.
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

private:
    void startWriteBack();
    void stopWriteBack() noexcept;

    std::string option_, path_, temporary_;
    int fd_ = -1;
    std::unique_ptr<std::streambuf> buffer_;
    std::unique_ptr<std::ostream> stream_;
    bool open_ = false;
    std::mutex mutex_;
    std::condition_variable wake_;
    bool pending_ = false, stopping_ = false;
    std::thread writeBack_;
};

} // namespace batch
