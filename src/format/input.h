// Where the input engine reads: a window of memory, and what to do at its edges.
//
// The engine knows no streams. It takes characters from the window and puts them back into it; a
// source supplies the next window, and takes back what no longer fits in front of one.
#pragma once

#include "format/directive.h"

namespace vexrt {

template <typename Char>
class Input {
public:
    // The next character, -1 at the end.
    int get() {
        if (at_ == end_ && !refill_(*this)) return -1;
        return static_cast<int>(code_of(*at_++));
    }

    // Puts back the character just read; the end of input is nothing to put back.
    void unget(int c) {
        if (c < 0) return;
        if (at_ != begin_)
            --at_;
        else
            push_back_(*this, static_cast<Char>(c));
    }

    // How many characters have been read and not put back.
    long consumed() const { return before_ + static_cast<long>(at_ - begin_); }

protected:
    // Makes a window that is not empty; false at the end of input.
    using Refill = bool (*)(Input &);
    using PushBack = void (*)(Input &, Char);

    Input(Refill refill, PushBack push_back) : refill_(refill), push_back_(push_back) {}

    // A window in place of the one before it.
    void set_window(const Char *begin, const Char *end) {
        before_ = consumed();
        begin_ = at_ = begin;
        end_ = end;
    }

    const Char *begin_ = nullptr, *at_ = nullptr, *end_ = nullptr;
    long before_ = 0; // characters consumed before the window

private:
    Refill refill_;
    PushBack push_back_;
};

// A string. Its length is found out piece by piece, so that a call that reads little of a long
// string takes little time.
template <typename Char>
class StringInput : public Input<Char> {
public:
    explicit StringInput(const Char *text) : Input<Char>(extend, nullptr) { // nothing is in front
        this->set_window(text, text);
    }

private:
    static bool extend(Input<Char> &input) {
        constexpr int piece = 32;
        auto &self = static_cast<StringInput &>(input);
        for (int i = 0; i < piece && *self.end_; ++i) ++self.end_;
        return self.at_ != self.end_;
    }
};

} // namespace vexrt
