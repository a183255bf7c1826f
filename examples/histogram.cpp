// histogram: counts the lengths of words on standard input. C++ with the headers alone: classes, templates,
// lambdas, static objects with destructors; no C++ library.
//
//   histogram <text
#include <ctype.h>
#include <stdio.h>
#include <stdlib.h>

namespace {

// An array that grows and owns its memory.
template <typename T> class Vector {
public:
    Vector() = default;
    Vector(const Vector &) = delete;
    Vector &operator=(const Vector &) = delete;
    ~Vector() { free(data_); }

    T &operator[](size_t index) {
        if (index >= size_) grow(index + 1);
        return data_[index];
    }
    T *begin() { return data_; }
    T *end() { return data_ + size_; }

private:
    void grow(size_t size) {
        void *data = realloc(data_, size * sizeof(T));
        if (!data) {
            fputs("histogram: out of memory\n", stderr);
            exit(1);
        }
        data_ = static_cast<T *>(data);
        while (size_ < size) data_[size_++] = T{};
    }

    T *data_ = nullptr;
    size_t size_ = 0;
};

Vector<unsigned> counts; // by length

struct Farewell {
    unsigned words = 0;
    ~Farewell() { printf("%u words\n", words); }
} farewell;

template <typename Word> void for_each_word(FILE *stream, Word word) {
    size_t length = 0;
    for (int c; (c = getc(stream)) != EOF;) {
        if (isalpha(c)) {
            ++length;
        } else if (length) {
            word(length);
            length = 0;
        }
    }
    if (length) word(length);
}

} // namespace

int main() {
    for_each_word(stdin, [](size_t length) {
        ++counts[length];
        ++farewell.words;
    });
    unsigned most = 1;
    for (unsigned count : counts) most = count > most ? count : most;
    for (unsigned &count : counts) {
        if (count == 0) continue;
        printf("%3d %5u ", static_cast<int>(&count - counts.begin()), count);
        for (unsigned star = 0; star < (count * 40 + most - 1) / most; ++star) putchar('*');
        putchar('\n');
    }
    return 0;
}
