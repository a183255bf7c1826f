// What the two kinds of WinMain() are given.
#pragma once

#include "platform/kernel32.h"

// How the first window shall be shown: what the starter of the process asked for, else as usual.
inline int show_command() {
    constexpr vexrt::DWORD uses_show_window = 1;
    constexpr int show_default = 10;
    vexrt::STARTUPINFOW info;
    vexrt::GetStartupInfoW(&info);
    return info.dwFlags & uses_show_window ? info.wShowWindow : show_default;
}
