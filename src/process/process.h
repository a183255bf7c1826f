// What stays inside this folder.
#pragma once

#include "platform/kernel32.h"

#include <stdint.h>

namespace vexrt {

enum SpawnMode : int { spawn_wait, spawn_handle, spawn_replace, spawn_handle_too, spawn_detached };

// Starts a program; see _spawnve and _spawnvpe. The result depends on the mode; -1 with errno.
template <typename Char>
intptr_t spawn(int mode, const Char *path, Char *const *arguments, Char *const *environment);
template <typename Char>
intptr_t spawn_from_path(int mode, const Char *name, Char *const *arguments,
                         Char *const *environment);

// The command interpreter with a command.
template <typename Char>
intptr_t run_command(int mode, const Char *command);

// Waits for the end of a process; false with errno.
bool exit_code_of(HANDLE process, DWORD &code);

inline HANDLE as_handle(intptr_t number) { return reinterpret_cast<HANDLE>(number); }

} // namespace vexrt
