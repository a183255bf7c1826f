// The powers of ten that a decimal text of at most 27 digits can need, to 128 bits, computed by the
// compiler: exact for 0 to 55, rounded down elsewhere.
#pragma once

#include <stdint.h>

namespace vexrt {

constexpr int lowest_power_of_ten = -351; // 10^27 times this is half of the least subnormal double
constexpr int highest_power_of_ten = 308;

// 10^n is about (high * 2^64 + low) * 2^(floor_log2_of_power(n) - 127), with the top bit of `high`
// set.
struct PowerOfTen {
    uint64_t high, low;
};

// floor(log2(10^n)), right for |n| up to 1650.
constexpr int floor_log2_of_power(int n) { return n * 217706 >> 16; }

class PowersOfTen {
public:
    constexpr PowersOfTen() : entries{} {
        // 5^n has the significant bits of 10^n. Upwards the product is exact; downwards every step
        // is floor(2^1280 / 5^n), which dividing the step before gives exactly.
        Bits up{}, down{};
        up.words[0] = 1;
        for (int n = 0; n <= highest_power_of_ten; ++n, up.multiply_by_five())
            entries[n - lowest_power_of_ten] = up.leading();
        down.words[Bits::count - 1] = 1;
        for (int n = -1; n >= lowest_power_of_ten; --n) {
            down.divide_by_five();
            entries[n - lowest_power_of_ten] = down.leading();
        }
    }

    constexpr const PowerOfTen &operator[](int n) const { return entries[n - lowest_power_of_ten]; }

private:
    struct Bits {
        static constexpr int count = 41;
        uint32_t words[count];
        int used = count; // the words from here on are zero

        constexpr void multiply_by_five() {
            uint64_t carry = 0;
            for (int i = 0; i < count && (i < 2 || words[i - 1] || words[i] || carry); ++i) {
                carry += static_cast<uint64_t>(words[i]) * 5;
                words[i] = static_cast<uint32_t>(carry);
                carry >>= 32;
            }
        }
        constexpr void divide_by_five() {
            uint64_t rest = 0;
            while (used > 1 && !words[used - 1]) --used;
            for (int i = used - 1; i >= 0; --i) {
                rest = rest << 32 | words[i];
                words[i] = static_cast<uint32_t>(rest / 5);
                rest %= 5;
            }
        }
        constexpr PowerOfTen leading() const {
            int top = count - 1;
            while (!words[top]) --top;
            int shift = __builtin_clz(words[top]);
            uint32_t out[4] = {};
            for (int i = 0; i < 4; ++i) {
                uint64_t pair = static_cast<uint64_t>(word(top - i)) << 32 | word(top - i - 1);
                out[i] = static_cast<uint32_t>(pair << shift >> 32);
            }
            return {static_cast<uint64_t>(out[0]) << 32 | out[1],
                    static_cast<uint64_t>(out[2]) << 32 | out[3]};
        }
        constexpr uint32_t word(int i) const { return i < 0 ? 0 : words[i]; }
    };

    PowerOfTen entries[highest_power_of_ten - lowest_power_of_ten + 1];
};

} // namespace vexrt
