// Owners of file descriptors.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <utility>

namespace runtime {

class FileDescriptor {
  public:
    explicit FileDescriptor(int number = -1) : number_(number) {}
    FileDescriptor(FileDescriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor() {
        if (number_ >= 0) {
            ::close(number_);
        }
    }
    [[nodiscard]] int Number() const { return number_; }

  private:
    int number_;
};

/// Takes ownership of a new file and moves it to a number above those of the standard streams. A program that has
/// closed its standard output would otherwise print to the instrument.
inline FileDescriptor MoveAboveStandardStreams(int number) {
    FileDescriptor file(number);
    if (number >= 0 && number <= STDERR_FILENO) {
        return FileDescriptor(::fcntl(number, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
    }
    return file;
}

} // namespace runtime
