// Sines and cosines of multiples of pi/64, the polynomials between them, pi/64 in
// pieces, and the bits of 2/pi for large arguments.
// Made by tools/math/elementary.py; do not edit.
// clang-format off
#pragma once

namespace vexrt {

inline constexpr double sine_steps_per_unit = 0x1.45f306dc9c883p4;
// pi/64; multiples of the first two pieces by 24 bits are exact
inline constexpr double sine_step[] = {
    0x1.921fb54p-5, 0x1.10b4612p-35, -0x1.676733ae8fe48p-65,
};
// pi/64 as a sum of two, and for float: a multiple of the first by 20 bits is exact
inline constexpr double sine_step_pair[] = {
    0x1.921fb54442d18p-5, 0x1.1a62633145c07p-59,
};
inline constexpr double sine_step_float[] = {
    0x1.921fb544p-5, 0x1.0b4611a626331p-39,
};
// (sin r - r) / r^3 and (cos r - 1) / r^2 in r^2; and for float
inline constexpr double sin_tail[] = {
    -0x1.a0189d925e91p-13, 0x1.11111110bb60ap-7, -0x1.5555555555555p-3,
};
inline constexpr double cos_tail[] = {
    -0x1.6c1530dcc947p-10, 0x1.5555555494887p-5, -0x1.ffffffffffffdp-2,
};
inline constexpr double sin_tail_float[] = {
    0x1.11100606d99b2p-7, -0x1.55555554ffa4fp-3,
};
inline constexpr double cos_tail_float[] = {
    0x1.55538203b6ecap-5, -0x1.fffffffed416bp-2,
};

// The sine of a multiple as a sum of two, and its cosine likewise, the first piece of 21 bits.
struct SineEntry {
    double sine, sine_rest, cosine, cosine_rest;
};
alignas(32) inline constexpr SineEntry sine_table[128] = {
    {0, 0, 0x1p0, 0},
    {0x1.91f65f10dd814p-5, -0x1.912bd0d569a9p-61, 0x1.ff621p-1, 0x1.c6f2dafbc7508p-22},
    {0x1.917a6bc29b42cp-4, -0x1.e2718d26ed688p-60, 0x1.fd88dp-1, 0x1.47a24a4b3c105p-22},
    {0x1.2c8106e8e613ap-3, 0x1.13000a89a11ep-58, 0x1.fa755p-1, 0x1.fc22945a85f57p-23},
    {0x1.8f8b83c69a60bp-3, -0x1.26d19b9ff8d82p-57, 0x1.f6297p-1, 0x1.9feeb96055886p-22},
    {0x1.f19f97b215f1bp-3, -0x1.42deef11da2c4p-57, 0x1.f0a7ep-1, 0x1.f72461ae54b1fp-22},
    {0x1.294062ed59f06p-2, -0x1.5d28da2c4612dp-56, 0x1.e9f41p-1, 0x1.5b18b769760b2p-23},
    {0x1.58f9a75ab1fddp-2, -0x1.efdc0d58cf62p-62, 0x1.e2121p-1, 0x1.3da1b92feb389p-27},
    {0x1.87de2a6aea963p-2, -0x1.72cedd3d5a61p-57, 0x1.d906bp-1, 0x1.9e651a8c515fap-22},
    {0x1.b5d1009e15ccp-2, 0x1.5b362cb974183p-57, 0x1.ced7ap-1, 0x1.e8798ee5e1849p-22},
    {0x1.e2b5d3806f63bp-2, 0x1.e0d891d3c6841p-58, 0x1.c38b2p-1, 0x1.e3017b61a47d4p-22},
    {0x1.073879922ffeep-1, -0x1.a5a014347406cp-55, 0x1.b7283p-1, 0x1.1465b8f643961p-23},
    {0x1.1c73b39ae68c8p-1, 0x1.b25dd267f66p-55, 0x1.a9b66p-1, 0x1.48750d1819f63p-24},
    {0x1.30ff7fce17035p-1, -0x1.efcc626f74a6fp-57, 0x1.9b3ep-1, 0x1.1fce1d02cf11dp-23},
    {0x1.44cf325091dd6p-1, 0x1.8076a2cfdc6b3p-57, 0x1.8bc8p-1, 0x1.ac545d02d3a1fp-23},
    {0x1.57d69348cecap-1, -0x1.75720992bfbb2p-55, 0x1.7b5dfp-1, 0x1.13557d76f0ac8p-24},
    {0x1.6a09e667f3bcdp-1, -0x1.bdd3413b26456p-55, 0x1.6a09ep-1, 0x1.99fcef32422ccp-23},
    {0x1.7b5df226aafafp-1, -0x1.0f537acdf0ad7p-56, 0x1.57d69p-1, 0x1.a46764fd151bfp-24},
    {0x1.8bc806b151741p-1, -0x1.2c5e12ed1336dp-55, 0x1.44cf3p-1, 0x1.2848eeb0c03b5p-24},
    {0x1.9b3e047f38741p-1, -0x1.30ee286712474p-55, 0x1.30ff7p-1, 0x1.f9c2e069c2067p-22},
    {0x1.a9b66290ea1a3p-1, 0x1.9f630e8b6dac8p-60, 0x1.1c73bp-1, 0x1.cd73464364bbap-24},
    {0x1.b728345196e3ep-1, -0x1.bc69f324e6d61p-55, 0x1.07387p-1, 0x1.3245ffdb2d2ffp-22},
    {0x1.c38b2f180bdb1p-1, -0x1.6e0b1757c8d07p-56, 0x1.e2b5dp-2, 0x1.c037b1d8f06c5p-25},
    {0x1.ced7af43cc773p-1, -0x1.e7b6bb5ab58aep-58, 0x1.b5d1p-2, 0x1.3c2b98056cd8bp-27},
    {0x1.d906bcf328d46p-1, 0x1.457e610231ac2p-56, 0x1.87de2p-2, 0x1.4d5d52c5a34c5p-23},
    {0x1.e212104f686e5p-1, -0x1.014c76c126527p-55, 0x1.58f9ap-2, 0x1.d6ac7f73f8409p-24},
    {0x1.e9f4156c62ddap-1, 0x1.760b1e2e3f81ep-55, 0x1.29406p-2, 0x1.76acf82d45ae5p-25},
    {0x1.f0a7efb9230d7p-1, 0x1.52c7adc6b4989p-56, 0x1.f19f9p-3, 0x1.ec857c6abd211p-25},
    {0x1.f6297cff75cbp-1, 0x1.562172a361fd3p-56, 0x1.8f8b8p-3, 0x1.e34d3055b25cdp-26},
    {0x1.fa7557f08a517p-1, -0x1.7a0a8ca13571fp-55, 0x1.2c81p-3, 0x1.ba3984e8898p-25},
    {0x1.fd88da3d12526p-1, -0x1.87df6378811c7p-55, 0x1.917a6p-4, 0x1.78536857c3b1dp-25},
    {0x1.ff621e3796d7ep-1, -0x1.c57bc2e24aa15p-57, 0x1.91f65p-5, 0x1.e21bb027cdda8p-26},
    {0x1p0, 0, 0, 0},
    {0x1.ff621e3796d7ep-1, -0x1.c57bc2e24aa15p-57, -0x1.91f65p-5, -0x1.e21bb027cdda8p-26},
    {0x1.fd88da3d12526p-1, -0x1.87df6378811c7p-55, -0x1.917a6p-4, -0x1.78536857c3b1dp-25},
    {0x1.fa7557f08a517p-1, -0x1.7a0a8ca13571fp-55, -0x1.2c81p-3, -0x1.ba3984e8898p-25},
    {0x1.f6297cff75cbp-1, 0x1.562172a361fd3p-56, -0x1.8f8b8p-3, -0x1.e34d3055b25cdp-26},
    {0x1.f0a7efb9230d7p-1, 0x1.52c7adc6b4989p-56, -0x1.f19f9p-3, -0x1.ec857c6abd211p-25},
    {0x1.e9f4156c62ddap-1, 0x1.760b1e2e3f81ep-55, -0x1.29406p-2, -0x1.76acf82d45ae5p-25},
    {0x1.e212104f686e5p-1, -0x1.014c76c126527p-55, -0x1.58f9ap-2, -0x1.d6ac7f73f8409p-24},
    {0x1.d906bcf328d46p-1, 0x1.457e610231ac2p-56, -0x1.87de2p-2, -0x1.4d5d52c5a34c5p-23},
    {0x1.ced7af43cc773p-1, -0x1.e7b6bb5ab58aep-58, -0x1.b5d1p-2, -0x1.3c2b98056cd8bp-27},
    {0x1.c38b2f180bdb1p-1, -0x1.6e0b1757c8d07p-56, -0x1.e2b5dp-2, -0x1.c037b1d8f06c5p-25},
    {0x1.b728345196e3ep-1, -0x1.bc69f324e6d61p-55, -0x1.07387p-1, -0x1.3245ffdb2d2ffp-22},
    {0x1.a9b66290ea1a3p-1, 0x1.9f630e8b6dac8p-60, -0x1.1c73bp-1, -0x1.cd73464364bbap-24},
    {0x1.9b3e047f38741p-1, -0x1.30ee286712474p-55, -0x1.30ff7p-1, -0x1.f9c2e069c2067p-22},
    {0x1.8bc806b151741p-1, -0x1.2c5e12ed1336dp-55, -0x1.44cf3p-1, -0x1.2848eeb0c03b5p-24},
    {0x1.7b5df226aafafp-1, -0x1.0f537acdf0ad7p-56, -0x1.57d69p-1, -0x1.a46764fd151bfp-24},
    {0x1.6a09e667f3bcdp-1, -0x1.bdd3413b26456p-55, -0x1.6a09ep-1, -0x1.99fcef32422ccp-23},
    {0x1.57d69348cecap-1, -0x1.75720992bfbb2p-55, -0x1.7b5dfp-1, -0x1.13557d76f0ac8p-24},
    {0x1.44cf325091dd6p-1, 0x1.8076a2cfdc6b3p-57, -0x1.8bc8p-1, -0x1.ac545d02d3a1fp-23},
    {0x1.30ff7fce17035p-1, -0x1.efcc626f74a6fp-57, -0x1.9b3ep-1, -0x1.1fce1d02cf11dp-23},
    {0x1.1c73b39ae68c8p-1, 0x1.b25dd267f66p-55, -0x1.a9b66p-1, -0x1.48750d1819f63p-24},
    {0x1.073879922ffeep-1, -0x1.a5a014347406cp-55, -0x1.b7283p-1, -0x1.1465b8f643961p-23},
    {0x1.e2b5d3806f63bp-2, 0x1.e0d891d3c6841p-58, -0x1.c38b2p-1, -0x1.e3017b61a47d4p-22},
    {0x1.b5d1009e15ccp-2, 0x1.5b362cb974183p-57, -0x1.ced7ap-1, -0x1.e8798ee5e1849p-22},
    {0x1.87de2a6aea963p-2, -0x1.72cedd3d5a61p-57, -0x1.d906bp-1, -0x1.9e651a8c515fap-22},
    {0x1.58f9a75ab1fddp-2, -0x1.efdc0d58cf62p-62, -0x1.e2121p-1, -0x1.3da1b92feb389p-27},
    {0x1.294062ed59f06p-2, -0x1.5d28da2c4612dp-56, -0x1.e9f41p-1, -0x1.5b18b769760b2p-23},
    {0x1.f19f97b215f1bp-3, -0x1.42deef11da2c4p-57, -0x1.f0a7ep-1, -0x1.f72461ae54b1fp-22},
    {0x1.8f8b83c69a60bp-3, -0x1.26d19b9ff8d82p-57, -0x1.f6297p-1, -0x1.9feeb96055886p-22},
    {0x1.2c8106e8e613ap-3, 0x1.13000a89a11ep-58, -0x1.fa755p-1, -0x1.fc22945a85f57p-23},
    {0x1.917a6bc29b42cp-4, -0x1.e2718d26ed688p-60, -0x1.fd88dp-1, -0x1.47a24a4b3c105p-22},
    {0x1.91f65f10dd814p-5, -0x1.912bd0d569a9p-61, -0x1.ff621p-1, -0x1.c6f2dafbc7508p-22},
    {0, 0, -0x1p0, 0},
    {-0x1.91f65f10dd814p-5, 0x1.912bd0d569a9p-61, -0x1.ff621p-1, -0x1.c6f2dafbc7508p-22},
    {-0x1.917a6bc29b42cp-4, 0x1.e2718d26ed688p-60, -0x1.fd88dp-1, -0x1.47a24a4b3c105p-22},
    {-0x1.2c8106e8e613ap-3, -0x1.13000a89a11ep-58, -0x1.fa755p-1, -0x1.fc22945a85f57p-23},
    {-0x1.8f8b83c69a60bp-3, 0x1.26d19b9ff8d82p-57, -0x1.f6297p-1, -0x1.9feeb96055886p-22},
    {-0x1.f19f97b215f1bp-3, 0x1.42deef11da2c4p-57, -0x1.f0a7ep-1, -0x1.f72461ae54b1fp-22},
    {-0x1.294062ed59f06p-2, 0x1.5d28da2c4612dp-56, -0x1.e9f41p-1, -0x1.5b18b769760b2p-23},
    {-0x1.58f9a75ab1fddp-2, 0x1.efdc0d58cf62p-62, -0x1.e2121p-1, -0x1.3da1b92feb389p-27},
    {-0x1.87de2a6aea963p-2, 0x1.72cedd3d5a61p-57, -0x1.d906bp-1, -0x1.9e651a8c515fap-22},
    {-0x1.b5d1009e15ccp-2, -0x1.5b362cb974183p-57, -0x1.ced7ap-1, -0x1.e8798ee5e1849p-22},
    {-0x1.e2b5d3806f63bp-2, -0x1.e0d891d3c6841p-58, -0x1.c38b2p-1, -0x1.e3017b61a47d4p-22},
    {-0x1.073879922ffeep-1, 0x1.a5a014347406cp-55, -0x1.b7283p-1, -0x1.1465b8f643961p-23},
    {-0x1.1c73b39ae68c8p-1, -0x1.b25dd267f66p-55, -0x1.a9b66p-1, -0x1.48750d1819f63p-24},
    {-0x1.30ff7fce17035p-1, 0x1.efcc626f74a6fp-57, -0x1.9b3ep-1, -0x1.1fce1d02cf11dp-23},
    {-0x1.44cf325091dd6p-1, -0x1.8076a2cfdc6b3p-57, -0x1.8bc8p-1, -0x1.ac545d02d3a1fp-23},
    {-0x1.57d69348cecap-1, 0x1.75720992bfbb2p-55, -0x1.7b5dfp-1, -0x1.13557d76f0ac8p-24},
    {-0x1.6a09e667f3bcdp-1, 0x1.bdd3413b26456p-55, -0x1.6a09ep-1, -0x1.99fcef32422ccp-23},
    {-0x1.7b5df226aafafp-1, 0x1.0f537acdf0ad7p-56, -0x1.57d69p-1, -0x1.a46764fd151bfp-24},
    {-0x1.8bc806b151741p-1, 0x1.2c5e12ed1336dp-55, -0x1.44cf3p-1, -0x1.2848eeb0c03b5p-24},
    {-0x1.9b3e047f38741p-1, 0x1.30ee286712474p-55, -0x1.30ff7p-1, -0x1.f9c2e069c2067p-22},
    {-0x1.a9b66290ea1a3p-1, -0x1.9f630e8b6dac8p-60, -0x1.1c73bp-1, -0x1.cd73464364bbap-24},
    {-0x1.b728345196e3ep-1, 0x1.bc69f324e6d61p-55, -0x1.07387p-1, -0x1.3245ffdb2d2ffp-22},
    {-0x1.c38b2f180bdb1p-1, 0x1.6e0b1757c8d07p-56, -0x1.e2b5dp-2, -0x1.c037b1d8f06c5p-25},
    {-0x1.ced7af43cc773p-1, 0x1.e7b6bb5ab58aep-58, -0x1.b5d1p-2, -0x1.3c2b98056cd8bp-27},
    {-0x1.d906bcf328d46p-1, -0x1.457e610231ac2p-56, -0x1.87de2p-2, -0x1.4d5d52c5a34c5p-23},
    {-0x1.e212104f686e5p-1, 0x1.014c76c126527p-55, -0x1.58f9ap-2, -0x1.d6ac7f73f8409p-24},
    {-0x1.e9f4156c62ddap-1, -0x1.760b1e2e3f81ep-55, -0x1.29406p-2, -0x1.76acf82d45ae5p-25},
    {-0x1.f0a7efb9230d7p-1, -0x1.52c7adc6b4989p-56, -0x1.f19f9p-3, -0x1.ec857c6abd211p-25},
    {-0x1.f6297cff75cbp-1, -0x1.562172a361fd3p-56, -0x1.8f8b8p-3, -0x1.e34d3055b25cdp-26},
    {-0x1.fa7557f08a517p-1, 0x1.7a0a8ca13571fp-55, -0x1.2c81p-3, -0x1.ba3984e8898p-25},
    {-0x1.fd88da3d12526p-1, 0x1.87df6378811c7p-55, -0x1.917a6p-4, -0x1.78536857c3b1dp-25},
    {-0x1.ff621e3796d7ep-1, 0x1.c57bc2e24aa15p-57, -0x1.91f65p-5, -0x1.e21bb027cdda8p-26},
    {-0x1p0, 0, 0, 0},
    {-0x1.ff621e3796d7ep-1, 0x1.c57bc2e24aa15p-57, 0x1.91f65p-5, 0x1.e21bb027cdda8p-26},
    {-0x1.fd88da3d12526p-1, 0x1.87df6378811c7p-55, 0x1.917a6p-4, 0x1.78536857c3b1dp-25},
    {-0x1.fa7557f08a517p-1, 0x1.7a0a8ca13571fp-55, 0x1.2c81p-3, 0x1.ba3984e8898p-25},
    {-0x1.f6297cff75cbp-1, -0x1.562172a361fd3p-56, 0x1.8f8b8p-3, 0x1.e34d3055b25cdp-26},
    {-0x1.f0a7efb9230d7p-1, -0x1.52c7adc6b4989p-56, 0x1.f19f9p-3, 0x1.ec857c6abd211p-25},
    {-0x1.e9f4156c62ddap-1, -0x1.760b1e2e3f81ep-55, 0x1.29406p-2, 0x1.76acf82d45ae5p-25},
    {-0x1.e212104f686e5p-1, 0x1.014c76c126527p-55, 0x1.58f9ap-2, 0x1.d6ac7f73f8409p-24},
    {-0x1.d906bcf328d46p-1, -0x1.457e610231ac2p-56, 0x1.87de2p-2, 0x1.4d5d52c5a34c5p-23},
    {-0x1.ced7af43cc773p-1, 0x1.e7b6bb5ab58aep-58, 0x1.b5d1p-2, 0x1.3c2b98056cd8bp-27},
    {-0x1.c38b2f180bdb1p-1, 0x1.6e0b1757c8d07p-56, 0x1.e2b5dp-2, 0x1.c037b1d8f06c5p-25},
    {-0x1.b728345196e3ep-1, 0x1.bc69f324e6d61p-55, 0x1.07387p-1, 0x1.3245ffdb2d2ffp-22},
    {-0x1.a9b66290ea1a3p-1, -0x1.9f630e8b6dac8p-60, 0x1.1c73bp-1, 0x1.cd73464364bbap-24},
    {-0x1.9b3e047f38741p-1, 0x1.30ee286712474p-55, 0x1.30ff7p-1, 0x1.f9c2e069c2067p-22},
    {-0x1.8bc806b151741p-1, 0x1.2c5e12ed1336dp-55, 0x1.44cf3p-1, 0x1.2848eeb0c03b5p-24},
    {-0x1.7b5df226aafafp-1, 0x1.0f537acdf0ad7p-56, 0x1.57d69p-1, 0x1.a46764fd151bfp-24},
    {-0x1.6a09e667f3bcdp-1, 0x1.bdd3413b26456p-55, 0x1.6a09ep-1, 0x1.99fcef32422ccp-23},
    {-0x1.57d69348cecap-1, 0x1.75720992bfbb2p-55, 0x1.7b5dfp-1, 0x1.13557d76f0ac8p-24},
    {-0x1.44cf325091dd6p-1, -0x1.8076a2cfdc6b3p-57, 0x1.8bc8p-1, 0x1.ac545d02d3a1fp-23},
    {-0x1.30ff7fce17035p-1, 0x1.efcc626f74a6fp-57, 0x1.9b3ep-1, 0x1.1fce1d02cf11dp-23},
    {-0x1.1c73b39ae68c8p-1, -0x1.b25dd267f66p-55, 0x1.a9b66p-1, 0x1.48750d1819f63p-24},
    {-0x1.073879922ffeep-1, 0x1.a5a014347406cp-55, 0x1.b7283p-1, 0x1.1465b8f643961p-23},
    {-0x1.e2b5d3806f63bp-2, -0x1.e0d891d3c6841p-58, 0x1.c38b2p-1, 0x1.e3017b61a47d4p-22},
    {-0x1.b5d1009e15ccp-2, -0x1.5b362cb974183p-57, 0x1.ced7ap-1, 0x1.e8798ee5e1849p-22},
    {-0x1.87de2a6aea963p-2, 0x1.72cedd3d5a61p-57, 0x1.d906bp-1, 0x1.9e651a8c515fap-22},
    {-0x1.58f9a75ab1fddp-2, 0x1.efdc0d58cf62p-62, 0x1.e2121p-1, 0x1.3da1b92feb389p-27},
    {-0x1.294062ed59f06p-2, 0x1.5d28da2c4612dp-56, 0x1.e9f41p-1, 0x1.5b18b769760b2p-23},
    {-0x1.f19f97b215f1bp-3, 0x1.42deef11da2c4p-57, 0x1.f0a7ep-1, 0x1.f72461ae54b1fp-22},
    {-0x1.8f8b83c69a60bp-3, 0x1.26d19b9ff8d82p-57, 0x1.f6297p-1, 0x1.9feeb96055886p-22},
    {-0x1.2c8106e8e613ap-3, -0x1.13000a89a11ep-58, 0x1.fa755p-1, 0x1.fc22945a85f57p-23},
    {-0x1.917a6bc29b42cp-4, 0x1.e2718d26ed688p-60, 0x1.fd88dp-1, 0x1.47a24a4b3c105p-22},
    {-0x1.91f65f10dd814p-5, 0x1.912bd0d569a9p-61, 0x1.ff621p-1, 0x1.c6f2dafbc7508p-22},
};

// The bits of 64/pi, highest first; the first weighs 2^63.
inline constexpr unsigned steps_per_unit_bits[] = {
    0x00000000, 0x00000014, 0x5F306DC9, 0xC882A53F, 0x84EAFA3E, 0xA69BB81B, 0x6C52B327, 0x8872083F,
    0xCA2C757B, 0xD778AC36, 0xE48DC748, 0x49BA5C00, 0xC925DD41, 0x3A32439F, 0xC3BD6396, 0x2534E7DD,
    0x1046BEA5, 0xD768909D, 0x338E04D6, 0x8BEFC827, 0x323AC730, 0x6A673E93, 0x908BF177, 0xBF250763,
    0xFF12FFFB, 0xC0B301FD, 0xE5E2316B, 0x414DA3ED, 0xA6CFD9E4, 0xF96136E9, 0xE8C7ECD3, 0xCBFD45AE,
    0xA4F758FD, 0x7CBE2F67, 0xA0E73EF1, 0x4A525D4D, 0x7F6BF623, 0xF1ABA10A, 0xC06608DF, 0x8F6D757E,
    0x19F78413,
};

} // namespace vexrt
