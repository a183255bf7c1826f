#include "core/errno.h"

namespace vexrt {

namespace {

struct ErrorRange {
    unsigned short first, last;
    unsigned short code;
};

// Every operating-system code outside these ranges is EINVAL, an invalid handle (6) among them.
constexpr ErrorRange os_errors[] = {
    {2, 3, ENOENT},           {4, 4, EMFILE},     {5, 5, EACCES},       {7, 9, ENOMEM},
    {10, 10, E2BIG},          {11, 11, ENOEXEC},  {15, 15, ENOENT},     {16, 16, EACCES},
    {17, 17, EXDEV},          {18, 18, ENOENT},   {19, 34, EACCES},     {36, 36, EACCES},
    {53, 53, ENOENT},         {65, 65, EACCES},   {67, 67, ENOENT},     {80, 80, EEXIST},
    {82, 83, EACCES},         {89, 89, EAGAIN},   {108, 108, EACCES},   {109, 109, EPIPE},
    {111, 111, ENAMETOOLONG}, {112, 112, ENOSPC}, {113, 113, EAGAIN},   {114, 114, EBADF},
    {128, 129, ECHILD},       {130, 130, EBADF},  {132, 132, EACCES},   {145, 145, ENOTEMPTY},
    {155, 155, EAGAIN},       {158, 158, EACCES}, {161, 161, ENOENT},   {164, 164, EAGAIN},
    {167, 167, EACCES},       {170, 170, EBUSY},  {183, 183, EEXIST},   {188, 202, ENOEXEC},
    {206, 206, ENOENT},       {215, 215, EAGAIN}, {1816, 1816, ENOMEM},
};

} // namespace

void map_os_error(DWORD code) {
    for (const ErrorRange &range : os_errors)
        if (code >= range.first && code <= range.last) return set_errno(range.code);
    set_errno(EINVAL);
}

} // namespace vexrt

extern "C" int *__errno() { return &vexrt::thread_record().error_number; }
