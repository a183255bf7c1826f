// Says that an image uses floating point; clang refers to it on windows-msvc.

extern "C" {
extern const int _fltused = 0x9875;
}
