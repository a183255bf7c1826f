// The part of kernel32.dll that this library calls, declared as the operating system documents it.
// Names, types and values are the system's own; there is no logic here.
#pragma once

namespace vexrt {

using BOOL = int;
using BOOLEAN = unsigned char;
using BYTE = unsigned char;
using WORD = unsigned short;
using DWORD = unsigned long;
using UINT = unsigned int;
using LONG = long;
using HANDLE = void *;
using HMODULE = void *;
using SIZE_T = unsigned long;
using LARGE_INTEGER = long long;

#define INVALID_HANDLE_VALUE (reinterpret_cast<::vexrt::HANDLE>(-1))

struct SECURITY_ATTRIBUTES {
    DWORD nLength;
    void *lpSecurityDescriptor;
    BOOL bInheritHandle;
};

struct STARTUPINFOW {
    DWORD cb;
    wchar_t *lpReserved, *lpDesktop, *lpTitle;
    DWORD dwX, dwY, dwXSize, dwYSize, dwXCountChars, dwYCountChars, dwFillAttribute, dwFlags;
    WORD wShowWindow, cbReserved2;
    BYTE *lpReserved2;
    HANDLE hStdInput, hStdOutput, hStdError;
};

struct STARTUPINFOA {
    DWORD cb;
    char *lpReserved, *lpDesktop, *lpTitle;
    DWORD dwX, dwY, dwXSize, dwYSize, dwXCountChars, dwYCountChars, dwFillAttribute, dwFlags;
    WORD wShowWindow, cbReserved2;
    BYTE *lpReserved2;
    HANDLE hStdInput, hStdOutput, hStdError;
};
static_assert(sizeof(STARTUPINFOA) == 68);

struct PROCESS_INFORMATION {
    HANDLE hProcess, hThread;
    DWORD dwProcessId, dwThreadId;
};

struct SYSTEMTIME {
    WORD wYear, wMonth, wDayOfWeek, wDay, wHour, wMinute, wSecond, wMilliseconds;
};

struct TIME_ZONE_INFORMATION {
    LONG Bias; // minutes, UTC = local time + Bias
    wchar_t StandardName[32];
    SYSTEMTIME StandardDate;
    LONG StandardBias;
    wchar_t DaylightName[32];
    SYSTEMTIME DaylightDate;
    LONG DaylightBias;
};
static_assert(sizeof(TIME_ZONE_INFORMATION) == 172);

struct FILETIME {
    DWORD low, high;
};

// WIN32_FIND_DATAA and WIN32_FIND_DATAW.
template <typename Char>
struct FIND_DATA {
    DWORD attributes;
    FILETIME created, accessed, written;
    DWORD size_high, size_low, reserved[2];
    Char name[260];
    Char alternate_name[14];
};
static_assert(sizeof(FIND_DATA<char>) == 320 && sizeof(FIND_DATA<wchar_t>) == 592);

// WIN32_FILE_ATTRIBUTE_DATA: what a search finds begins with the same.
struct FILE_ATTRIBUTE_DATA {
    DWORD attributes;
    FILETIME created, accessed, written;
    DWORD size_high, size_low;
};

struct BY_HANDLE_FILE_INFORMATION {
    DWORD attributes;
    FILETIME created, accessed, written;
    DWORD volume, size_high, size_low, link_count, index_high, index_low;
};

// Consoles. The character of a key event is a byte or a UTF-16 unit, by the function that read it.
struct COORD {
    short X, Y;
};

struct CONSOLE_SCREEN_BUFFER_INFO {
    COORD dwSize, dwCursorPosition;
    WORD wAttributes;
    short window[4];
    COORD dwMaximumWindowSize;
};
static_assert(sizeof(CONSOLE_SCREEN_BUFFER_INFO) == 22);

struct KEY_EVENT_RECORD {
    BOOL bKeyDown;
    WORD wRepeatCount, wVirtualKeyCode, wVirtualScanCode;
    union {
        wchar_t UnicodeChar;
        char AsciiChar;
    };
    DWORD dwControlKeyState;
};

struct INPUT_RECORD {
    WORD EventType;
    KEY_EVENT_RECORD KeyEvent; // when the type is KEY_EVENT
};
static_assert(sizeof(INPUT_RECORD) == 20);

enum : WORD { KEY_EVENT = 1 };
enum : DWORD {
    RIGHT_ALT_PRESSED = 0x01,
    LEFT_ALT_PRESSED = 0x02,
    RIGHT_CTRL_PRESSED = 0x04,
    LEFT_CTRL_PRESSED = 0x08,
    SHIFT_PRESSED = 0x10,
    ENHANCED_KEY = 0x100
};
enum : DWORD { ENABLE_PROCESSED_INPUT = 1, ENABLE_LINE_INPUT = 2, ENABLE_ECHO_INPUT = 4 };

struct MEMORY_BASIC_INFORMATION {
    void *BaseAddress, *AllocationBase;
    DWORD AllocationProtect;
    SIZE_T RegionSize;
    DWORD State, Protect, Type;
};

struct EXCEPTION_RECORD {
    DWORD ExceptionCode, ExceptionFlags;
    EXCEPTION_RECORD *ExceptionRecord;
    void *ExceptionAddress;
    DWORD NumberParameters;
    DWORD ExceptionInformation[15];
};

constexpr DWORD CONTEXT_CONTROL = 0x10001;

struct CONTEXT {
    DWORD ContextFlags;
    BYTE registers[712]; // not looked at
};
static_assert(sizeof(CONTEXT) == 716);

struct EXCEPTION_POINTERS {
    EXCEPTION_RECORD *ExceptionRecord;
    CONTEXT *ContextRecord;
};

constexpr DWORD EXCEPTION_UNWINDING = 0x2, EXCEPTION_EXIT_UNWIND = 0x4;

enum : DWORD {
    ERROR_SUCCESS = 0,
    ERROR_FILE_NOT_FOUND = 2,
    ERROR_ACCESS_DENIED = 5,
    ERROR_INVALID_HANDLE = 6,
    ERROR_NOT_ENOUGH_MEMORY = 8,
    ERROR_INVALID_PARAMETER = 87,
    ERROR_BROKEN_PIPE = 109,
    ERROR_INSUFFICIENT_BUFFER = 122,
    ERROR_NEGATIVE_SEEK = 131,
    ERROR_NO_DATA = 232,
};

enum : DWORD { DLL_PROCESS_DETACH, DLL_PROCESS_ATTACH, DLL_THREAD_ATTACH, DLL_THREAD_DETACH };

enum : DWORD { THREAD_SUSPEND_RESUME = 2, THREAD_GET_CONTEXT = 8 };
constexpr DWORD INFINITE = 0xFFFFFFFF, WAIT_FAILED = 0xFFFFFFFF;
constexpr DWORD DETACHED_PROCESS = 0x8, CREATE_UNICODE_ENVIRONMENT = 0x400;
constexpr DWORD DONT_RESOLVE_DLL_REFERENCES = 1;
enum : DWORD { WAIT_OBJECT_0 = 0, WAIT_TIMEOUT = 258 };
constexpr DWORD CREATE_SUSPENDED = 4;
constexpr DWORD TLS_OUT_OF_INDEXES = 0xFFFFFFFF;
constexpr DWORD TLS_MINIMUM_AVAILABLE = 64;
constexpr DWORD PF_AVX2_INSTRUCTIONS_AVAILABLE = 40;

enum : DWORD {
    MEM_COMMIT = 0x1000,
    MEM_RESERVE = 0x2000,
    MEM_RELEASE = 0x8000,
    MEM_FREE = 0x10000,
    MEM_MAPPED = 0x40000,
    MEM_IMAGE = 0x1000000
};
enum : DWORD { FILE_MAP_COPY = 1, FILE_MAP_WRITE = 2, FILE_MAP_READ = 4, FILE_MAP_EXECUTE = 0x20 };
enum : DWORD { PAGE_NOACCESS = 1, PAGE_READONLY = 2, PAGE_READWRITE = 4, PAGE_WRITECOPY = 8 };

enum : DWORD { GENERIC_WRITE = 0x40000000, GENERIC_READ = 0x80000000, DELETE = 0x10000 };
constexpr DWORD FILE_WRITE_ATTRIBUTES = 0x100, MOVEFILE_COPY_ALLOWED = 2;
enum : DWORD { FILE_SHARE_READ = 1, FILE_SHARE_WRITE = 2 };
enum : DWORD {
    CREATE_NEW = 1,
    CREATE_ALWAYS = 2,
    OPEN_EXISTING = 3,
    OPEN_ALWAYS = 4,
    TRUNCATE_EXISTING = 5
};
enum : DWORD {
    FILE_ATTRIBUTE_READONLY = 1,
    FILE_ATTRIBUTE_DIRECTORY = 0x10,
    FILE_ATTRIBUTE_NORMAL = 0x80,
    FILE_ATTRIBUTE_TEMPORARY = 0x100,
    FILE_ATTRIBUTE_REPARSE_POINT = 0x400,
    FILE_FLAG_BACKUP_SEMANTICS = 0x02000000,
    FILE_FLAG_DELETE_ON_CLOSE = 0x04000000,
    FILE_FLAG_SEQUENTIAL_SCAN = 0x08000000,
    FILE_FLAG_RANDOM_ACCESS = 0x10000000
};
enum : DWORD { FILE_TYPE_UNKNOWN = 0, FILE_TYPE_DISK = 1, FILE_TYPE_CHAR = 2, FILE_TYPE_PIPE = 3 };
enum : DWORD { FILE_BEGIN, FILE_CURRENT, FILE_END };
constexpr DWORD INVALID_FILE_ATTRIBUTES = 0xFFFFFFFF;
constexpr DWORD INVALID_SET_FILE_POINTER = 0xFFFFFFFF;
constexpr DWORD DUPLICATE_SAME_ACCESS = 2;
enum : DWORD { MB_PRECOMPOSED = 1, MB_ERR_INVALID_CHARS = 8 };
enum : DWORD {
    STD_INPUT_HANDLE = static_cast<DWORD>(-10),
    STD_OUTPUT_HANDLE = static_cast<DWORD>(-11),
    STD_ERROR_HANDLE = static_cast<DWORD>(-12)
};

enum : DWORD { TIME_ZONE_ID_UNKNOWN, TIME_ZONE_ID_STANDARD, TIME_ZONE_ID_DAYLIGHT };

#define VEXRT_IMPORT extern "C" __declspec(dllimport)

// Process, modules, diagnostics.
VEXRT_IMPORT char *__stdcall GetCommandLineA();
VEXRT_IMPORT wchar_t *__stdcall GetCommandLineW();
VEXRT_IMPORT DWORD __stdcall GetModuleFileNameA(HMODULE, char *, DWORD);
VEXRT_IMPORT DWORD __stdcall GetModuleFileNameW(HMODULE, wchar_t *, DWORD);
VEXRT_IMPORT char *__stdcall GetEnvironmentStrings();
VEXRT_IMPORT wchar_t *__stdcall GetEnvironmentStringsW();
VEXRT_IMPORT BOOL __stdcall FreeEnvironmentStringsA(char *);
VEXRT_IMPORT BOOL __stdcall FreeEnvironmentStringsW(wchar_t *);
VEXRT_IMPORT void __stdcall GetStartupInfoW(STARTUPINFOW *);
VEXRT_IMPORT HMODULE __stdcall GetModuleHandleA(const char *);
VEXRT_IMPORT HMODULE __stdcall LoadLibraryA(const char *);
VEXRT_IMPORT HMODULE __stdcall LoadLibraryExA(const char *, HANDLE, DWORD flags);
VEXRT_IMPORT BOOL __stdcall FreeLibrary(HMODULE);
VEXRT_IMPORT void *__stdcall GetProcAddress(HMODULE, const char *);
VEXRT_IMPORT __declspec(noreturn) void __stdcall ExitProcess(UINT);
VEXRT_IMPORT BOOL __stdcall IsDebuggerPresent();
VEXRT_IMPORT void __stdcall OutputDebugStringA(const char *);
VEXRT_IMPORT BOOL __stdcall IsProcessorFeaturePresent(DWORD);
VEXRT_IMPORT BOOL __stdcall QueryPerformanceFrequency(LARGE_INTEGER *);
VEXRT_IMPORT BOOL __stdcall QueryPerformanceCounter(LARGE_INTEGER *);
VEXRT_IMPORT DWORD __stdcall GetLastError();
VEXRT_IMPORT void __stdcall SetLastError(DWORD);
VEXRT_IMPORT DWORD __stdcall GetEnvironmentVariableA(const char *, char *, DWORD);
VEXRT_IMPORT BOOL __stdcall SetEnvironmentVariableA(const char *, const char *);
VEXRT_IMPORT BOOL __stdcall SetEnvironmentVariableW(const wchar_t *, const wchar_t *);
VEXRT_IMPORT BOOL __stdcall CreateProcessA(const char *, char *command, SECURITY_ATTRIBUTES *,
                                           SECURITY_ATTRIBUTES *, BOOL inherit, DWORD flags,
                                           void *environment, const char *directory, STARTUPINFOA *,
                                           PROCESS_INFORMATION *);
VEXRT_IMPORT BOOL __stdcall CreateProcessW(const wchar_t *, wchar_t *command, SECURITY_ATTRIBUTES *,
                                           SECURITY_ATTRIBUTES *, BOOL inherit, DWORD flags,
                                           void *environment, const wchar_t *directory,
                                           STARTUPINFOW *, PROCESS_INFORMATION *);
VEXRT_IMPORT BOOL __stdcall GetExitCodeProcess(HANDLE, DWORD *);
VEXRT_IMPORT DWORD __stdcall GetCurrentProcessId();
VEXRT_IMPORT BOOL __stdcall SetConsoleCtrlHandler(BOOL(__stdcall *)(DWORD), BOOL add);
VEXRT_IMPORT LONG __stdcall UnhandledExceptionFilter(EXCEPTION_POINTERS *);

// Time.
VEXRT_IMPORT void __stdcall GetSystemTime(SYSTEMTIME *);
VEXRT_IMPORT void __stdcall GetSystemTimeAsFileTime(unsigned long long *);
VEXRT_IMPORT DWORD __stdcall GetTimeZoneInformation(TIME_ZONE_INFORMATION *);

// Threads and waiting.
VEXRT_IMPORT DWORD __stdcall TlsAlloc();
VEXRT_IMPORT BOOL __stdcall TlsFree(DWORD);
VEXRT_IMPORT void *__stdcall TlsGetValue(DWORD);
VEXRT_IMPORT BOOL __stdcall TlsSetValue(DWORD, void *);
VEXRT_IMPORT DWORD __stdcall GetCurrentThreadId();
VEXRT_IMPORT HANDLE __stdcall CreateThread(SECURITY_ATTRIBUTES *, SIZE_T stack,
                                           DWORD(__stdcall *)(void *), void *, DWORD flags,
                                           DWORD *id);
VEXRT_IMPORT __declspec(noreturn) void __stdcall ExitThread(DWORD);
VEXRT_IMPORT HANDLE __stdcall OpenThread(DWORD access, BOOL inherit, DWORD id);
VEXRT_IMPORT DWORD __stdcall SuspendThread(HANDLE);
VEXRT_IMPORT DWORD __stdcall ResumeThread(HANDLE);
VEXRT_IMPORT BOOL __stdcall GetThreadContext(HANDLE, CONTEXT *);
VEXRT_IMPORT HANDLE __stdcall CreateEventW(SECURITY_ATTRIBUTES *, BOOL manual, BOOL set,
                                           const wchar_t *);
VEXRT_IMPORT BOOL __stdcall SetEvent(HANDLE);
VEXRT_IMPORT HANDLE __stdcall CreateSemaphoreW(SECURITY_ATTRIBUTES *, LONG initial, LONG maximum,
                                               const wchar_t *);
VEXRT_IMPORT BOOL __stdcall ReleaseSemaphore(HANDLE, LONG count, LONG *previous);
VEXRT_IMPORT HANDLE __stdcall CreateWaitableTimerA(SECURITY_ATTRIBUTES *, BOOL manual,
                                                   const char *);
VEXRT_IMPORT BOOL __stdcall SetWaitableTimer(HANDLE, const LARGE_INTEGER *due, LONG period,
                                             void *routine, void *argument, BOOL resume);
VEXRT_IMPORT DWORD __stdcall WaitForSingleObject(HANDLE, DWORD milliseconds);
VEXRT_IMPORT BOOL __stdcall CloseHandle(HANDLE);
VEXRT_IMPORT void __stdcall Sleep(DWORD milliseconds);

// Memory.
VEXRT_IMPORT HANDLE __stdcall HeapCreate(DWORD options, SIZE_T initial, SIZE_T maximum);
VEXRT_IMPORT BOOL __stdcall HeapDestroy(HANDLE);
VEXRT_IMPORT void *__stdcall HeapAlloc(HANDLE, DWORD flags, SIZE_T);
VEXRT_IMPORT void *__stdcall HeapReAlloc(HANDLE, DWORD flags, void *, SIZE_T);
VEXRT_IMPORT BOOL __stdcall HeapFree(HANDLE, DWORD flags, void *);
VEXRT_IMPORT SIZE_T __stdcall HeapSize(HANDLE, DWORD flags, const void *);
VEXRT_IMPORT BOOL __stdcall HeapValidate(HANDLE, DWORD flags, const void *);
VEXRT_IMPORT void *__stdcall VirtualAlloc(void *, SIZE_T, DWORD type, DWORD protect);
VEXRT_IMPORT BOOL __stdcall VirtualFree(void *, SIZE_T, DWORD type);
VEXRT_IMPORT SIZE_T __stdcall VirtualQuery(const void *, MEMORY_BASIC_INFORMATION *, SIZE_T);

// Files and handles.
VEXRT_IMPORT HANDLE __stdcall CreateFileA(const char *, DWORD access, DWORD share,
                                          SECURITY_ATTRIBUTES *, DWORD disposition,
                                          DWORD attributes, HANDLE model);
VEXRT_IMPORT HANDLE __stdcall CreateFileW(const wchar_t *, DWORD access, DWORD share,
                                          SECURITY_ATTRIBUTES *, DWORD disposition,
                                          DWORD attributes, HANDLE model);
VEXRT_IMPORT BOOL __stdcall ReadFile(HANDLE, void *, DWORD, DWORD *done, void *overlapped);
VEXRT_IMPORT BOOL __stdcall WriteFile(HANDLE, const void *, DWORD, DWORD *done, void *overlapped);
VEXRT_IMPORT DWORD __stdcall GetFileType(HANDLE);
VEXRT_IMPORT BOOL __stdcall SetFileAttributesA(const char *, DWORD);
VEXRT_IMPORT BOOL __stdcall SetFileAttributesW(const wchar_t *, DWORD);
VEXRT_IMPORT HANDLE __stdcall FindFirstFileA(const char *, FIND_DATA<char> *);
VEXRT_IMPORT HANDLE __stdcall FindFirstFileW(const wchar_t *, FIND_DATA<wchar_t> *);
VEXRT_IMPORT BOOL __stdcall FindNextFileA(HANDLE, FIND_DATA<char> *);
VEXRT_IMPORT BOOL __stdcall FindNextFileW(HANDLE, FIND_DATA<wchar_t> *);
VEXRT_IMPORT BOOL __stdcall FindClose(HANDLE);
VEXRT_IMPORT DWORD __stdcall GetFullPathNameA(const char *, DWORD size, char *, char **name);
VEXRT_IMPORT DWORD __stdcall GetFullPathNameW(const wchar_t *, DWORD size, wchar_t *,
                                              wchar_t **name);
VEXRT_IMPORT UINT __stdcall GetDriveTypeA(const char *);
VEXRT_IMPORT UINT __stdcall GetDriveTypeW(const wchar_t *);
VEXRT_IMPORT DWORD __stdcall GetLogicalDrives();
VEXRT_IMPORT DWORD __stdcall GetCurrentDirectoryA(DWORD size, char *);
VEXRT_IMPORT DWORD __stdcall GetCurrentDirectoryW(DWORD size, wchar_t *);
VEXRT_IMPORT BOOL __stdcall SetCurrentDirectoryA(const char *);
VEXRT_IMPORT BOOL __stdcall SetCurrentDirectoryW(const wchar_t *);
VEXRT_IMPORT BOOL __stdcall CreateDirectoryA(const char *, SECURITY_ATTRIBUTES *);
VEXRT_IMPORT BOOL __stdcall CreateDirectoryW(const wchar_t *, SECURITY_ATTRIBUTES *);
VEXRT_IMPORT BOOL __stdcall RemoveDirectoryA(const char *);
VEXRT_IMPORT BOOL __stdcall RemoveDirectoryW(const wchar_t *);
VEXRT_IMPORT BOOL __stdcall DeleteFileA(const char *);
VEXRT_IMPORT BOOL __stdcall DeleteFileW(const wchar_t *);
VEXRT_IMPORT BOOL __stdcall MoveFileExA(const char *, const char *, DWORD flags);
VEXRT_IMPORT BOOL __stdcall MoveFileExW(const wchar_t *, const wchar_t *, DWORD flags);
VEXRT_IMPORT BOOLEAN __stdcall CreateSymbolicLinkA(const char *link, const char *target,
                                                   DWORD flags);
VEXRT_IMPORT BOOLEAN __stdcall CreateSymbolicLinkW(const wchar_t *link, const wchar_t *target,
                                                   DWORD flags);
VEXRT_IMPORT BOOL __stdcall GetFileInformationByHandle(HANDLE, BY_HANDLE_FILE_INFORMATION *);
VEXRT_IMPORT BOOL __stdcall GetFileSizeEx(HANDLE, LARGE_INTEGER *);
VEXRT_IMPORT BOOL __stdcall PeekNamedPipe(HANDLE, void *, DWORD, DWORD *read, DWORD *available,
                                          DWORD *left);
VEXRT_IMPORT BOOL __stdcall SetFileTime(HANDLE, const FILETIME *created, const FILETIME *accessed,
                                        const FILETIME *written);
VEXRT_IMPORT BOOL __stdcall FileTimeToLocalFileTime(const FILETIME *, FILETIME *);
VEXRT_IMPORT BOOL __stdcall LocalFileTimeToFileTime(const FILETIME *, FILETIME *);
VEXRT_IMPORT BOOL __stdcall FileTimeToSystemTime(const FILETIME *, SYSTEMTIME *);
VEXRT_IMPORT BOOL __stdcall SystemTimeToFileTime(const SYSTEMTIME *, FILETIME *);
VEXRT_IMPORT HANDLE __stdcall CreateFileMappingW(HANDLE, SECURITY_ATTRIBUTES *, DWORD protect,
                                                 DWORD size_high, DWORD size_low, const wchar_t *);
VEXRT_IMPORT void *__stdcall MapViewOfFileEx(HANDLE, DWORD access, DWORD offset_high,
                                             DWORD offset_low, SIZE_T, void *address);
VEXRT_IMPORT BOOL __stdcall UnmapViewOfFile(const void *);
VEXRT_IMPORT BOOL __stdcall FlushViewOfFile(const void *, SIZE_T);
VEXRT_IMPORT BOOL __stdcall VirtualProtect(void *, SIZE_T, DWORD protect, DWORD *old);
VEXRT_IMPORT DWORD __stdcall GetFileAttributesA(const char *);
VEXRT_IMPORT DWORD __stdcall GetFileAttributesW(const wchar_t *);
VEXRT_IMPORT BOOL __stdcall GetFileAttributesExA(const char *, int level, FILE_ATTRIBUTE_DATA *);
VEXRT_IMPORT BOOL __stdcall GetFileAttributesExW(const wchar_t *, int level, FILE_ATTRIBUTE_DATA *);
VEXRT_IMPORT DWORD __stdcall SetFilePointer(HANDLE, LONG, LONG *high, DWORD origin);
VEXRT_IMPORT BOOL __stdcall SetFilePointerEx(HANDLE, LARGE_INTEGER, LARGE_INTEGER *, DWORD origin);
VEXRT_IMPORT BOOL __stdcall SetEndOfFile(HANDLE);
VEXRT_IMPORT BOOL __stdcall FlushFileBuffers(HANDLE);
VEXRT_IMPORT BOOL __stdcall LockFile(HANDLE, DWORD low, DWORD high, DWORD count_low,
                                     DWORD count_high);
VEXRT_IMPORT BOOL __stdcall UnlockFile(HANDLE, DWORD low, DWORD high, DWORD count_low,
                                       DWORD count_high);
VEXRT_IMPORT HANDLE __stdcall GetCurrentProcess();
VEXRT_IMPORT BOOL __stdcall DuplicateHandle(HANDLE source_process, HANDLE, HANDLE target_process,
                                            HANDLE *, DWORD access, BOOL inherit, DWORD options);
VEXRT_IMPORT BOOL __stdcall CreatePipe(HANDLE *read, HANDLE *write, SECURITY_ATTRIBUTES *,
                                       DWORD size);
VEXRT_IMPORT HANDLE __stdcall GetStdHandle(DWORD);
VEXRT_IMPORT BOOL __stdcall SetStdHandle(DWORD, HANDLE);
VEXRT_IMPORT BOOL __stdcall GetConsoleMode(HANDLE, DWORD *);
VEXRT_IMPORT UINT __stdcall GetConsoleCP();
VEXRT_IMPORT UINT __stdcall GetConsoleOutputCP();
VEXRT_IMPORT BOOL __stdcall SetConsoleMode(HANDLE, DWORD);
VEXRT_IMPORT BOOL __stdcall ReadConsoleInputA(HANDLE, INPUT_RECORD *, DWORD, DWORD *done);
VEXRT_IMPORT BOOL __stdcall ReadConsoleInputW(HANDLE, INPUT_RECORD *, DWORD, DWORD *done);
VEXRT_IMPORT BOOL __stdcall PeekConsoleInputA(HANDLE, INPUT_RECORD *, DWORD, DWORD *done);
VEXRT_IMPORT BOOL __stdcall GetNumberOfConsoleInputEvents(HANDLE, DWORD *);
VEXRT_IMPORT BOOL __stdcall GetConsoleScreenBufferInfo(HANDLE, CONSOLE_SCREEN_BUFFER_INFO *);
VEXRT_IMPORT BOOL __stdcall FillConsoleOutputCharacterA(HANDLE, char, DWORD count, COORD,
                                                        DWORD *done);
VEXRT_IMPORT BOOL __stdcall FillConsoleOutputAttribute(HANDLE, WORD, DWORD count, COORD,
                                                       DWORD *done);
VEXRT_IMPORT BOOL __stdcall SetConsoleCursorPosition(HANDLE, COORD);
VEXRT_IMPORT BOOL __stdcall SetConsoleTextAttribute(HANDLE, WORD);
VEXRT_IMPORT BOOL __stdcall ReadConsoleA(HANDLE, void *, DWORD, DWORD *done, void *);
VEXRT_IMPORT BOOL __stdcall WriteConsoleA(HANDLE, const void *, DWORD, DWORD *done, void *);
VEXRT_IMPORT BOOL __stdcall ReadConsoleW(HANDLE, void *, DWORD, DWORD *done, void *);
VEXRT_IMPORT BOOL __stdcall WriteConsoleW(HANDLE, const void *, DWORD, DWORD *done, void *);
VEXRT_IMPORT int __stdcall MultiByteToWideChar(UINT, DWORD, const char *, int, wchar_t *, int);
VEXRT_IMPORT int __stdcall WideCharToMultiByte(UINT, DWORD, const wchar_t *, int, char *, int,
                                               const char *, BOOL *);
VEXRT_IMPORT BOOL __stdcall IsDBCSLeadByteEx(UINT code_page, BYTE);

// Locales.
using LCID = DWORD;
using LCTYPE = DWORD;
using LocaleEnumeration = BOOL(__stdcall *)(char *identifier);
VEXRT_IMPORT BOOL __stdcall EnumSystemLocalesA(LocaleEnumeration, DWORD flags);
VEXRT_IMPORT LCID __stdcall GetUserDefaultLCID();
VEXRT_IMPORT int __stdcall GetLocaleInfoA(LCID, LCTYPE, char *, int size);
VEXRT_IMPORT BOOL __stdcall GetStringTypeExA(LCID, DWORD type, const char *, int length, WORD *);
VEXRT_IMPORT int __stdcall LCMapStringA(LCID, DWORD flags, const char *, int length, char *,
                                        int size);
VEXRT_IMPORT int __stdcall LCMapStringW(LCID, DWORD flags, const wchar_t *, int length, wchar_t *,
                                        int size);
VEXRT_IMPORT int __stdcall CompareStringW(LCID, DWORD flags, const wchar_t *, int length,
                                          const wchar_t *, int other_length);

constexpr DWORD LCID_INSTALLED = 1;
constexpr DWORD LCMAP_LOWERCASE = 0x100, LCMAP_UPPERCASE = 0x200, LCMAP_SORTKEY = 0x400;
constexpr DWORD CT_CTYPE1 = 1;
constexpr WORD C1_UPPER = 0x01, C1_LOWER = 0x02, C1_DIGIT = 0x04, C1_SPACE = 0x08, C1_PUNCT = 0x10,
               C1_CNTRL = 0x20, C1_XDIGIT = 0x80;
constexpr int CSTR_EQUAL = 2;

constexpr LCTYPE LOCALE_SDECIMAL = 0x0E, LOCALE_STHOUSAND = 0x0F, LOCALE_SGROUPING = 0x10,
                 LOCALE_SCURRENCY = 0x14, LOCALE_SINTLSYMBOL = 0x15, LOCALE_SMONDECIMALSEP = 0x16,
                 LOCALE_SMONTHOUSANDSEP = 0x17, LOCALE_SMONGROUPING = 0x18,
                 LOCALE_ICURRDIGITS = 0x19, LOCALE_IINTLCURRDIGITS = 0x1A, LOCALE_SSHORTDATE = 0x1F,
                 LOCALE_S1159 = 0x28, LOCALE_S2359 = 0x29, LOCALE_SDAYNAME1 = 0x2A,
                 LOCALE_SABBREVDAYNAME1 = 0x31, LOCALE_SMONTHNAME1 = 0x38,
                 LOCALE_SABBREVMONTHNAME1 = 0x44, LOCALE_SPOSITIVESIGN = 0x50,
                 LOCALE_SNEGATIVESIGN = 0x51, LOCALE_IPOSSIGNPOSN = 0x52,
                 LOCALE_INEGSIGNPOSN = 0x53, LOCALE_IPOSSYMPRECEDES = 0x54,
                 LOCALE_IPOSSEPBYSPACE = 0x55, LOCALE_INEGSYMPRECEDES = 0x56,
                 LOCALE_INEGSEPBYSPACE = 0x57, LOCALE_SISO3166CTRYNAME = 0x5A,
                 LOCALE_STIMEFORMAT = 0x1003, LOCALE_IDEFAULTANSICODEPAGE = 0x1004,
                 LOCALE_RETURN_NUMBER = 0x20000000;

} // namespace vexrt
