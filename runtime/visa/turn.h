// A lock for one direction of a connection, with a deadline for waiting.
#pragma once

#include <condition_variable>
#include <mutex>

#include "runtime/visa/deadline.h"

namespace runtime {

class TurnTaking {
  public:
    /// Holds the turn while it exists.
    class Turn {
      public:
        Turn(TurnTaking& turns, const Deadline& deadline) : turns_(turns), taken_(turns.Take(deadline)) {}
        Turn(const Turn&) = delete;
        Turn& operator=(const Turn&) = delete;
        ~Turn() {
            if (taken_) {
                turns_.Give();
            }
        }

        /// Returns false when the deadline passed first.
        [[nodiscard]] bool Taken() const { return taken_; }

      private:
        TurnTaking& turns_;
        bool taken_;
    };

  private:
    bool Take(const Deadline& deadline) {
        std::unique_lock lock(mutex_);
        const auto isFree = [this] { return !busy_; };
        if (deadline.IsInfinite()) { // wait_until would overflow at the end of the clock's range
            free_.wait(lock, isFree);
        } else if (!free_.wait_until(lock, deadline.At(), isFree)) {
            return false;
        }
        busy_ = true;
        return true;
    }

    void Give() {
        {
            const std::lock_guard lock(mutex_);
            busy_ = false;
        }
        free_.notify_one();
    }

    std::mutex mutex_;
    std::condition_variable free_;
    bool busy_ = false;
};

} // namespace runtime
