/* The POSIX spellings, and those that are customary on Windows, reach the same functions. */
#include "check.h"

#include <dirent.h>
#include <fcntl.h>
#include <io.h>
#include <regex.h>
#include <search.h>
#include <stdlib.h>
#include <strings.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

int main(void)
{
    const char *name = "io-posix.tmp";
    char text[16] = "";
    struct stat status;
    int fd = open(name, O_RDWR | O_CREAT | O_TRUNC, S_IRUSR | S_IWUSR);
    CHECK_INT(write(fd, "hello, posix", 12), 12);
    CHECK_INT(ftruncate(fd, 5), 0);
    CHECK_INT(lseek(fd, 0, SEEK_SET), 0);
    CHECK_INT(read(fd, text, sizeof text), 5);
    CHECK_STR(text, "hello");
    CHECK_INT(fstat(fd, &status), 0);
    char *map = mmap(NULL, 5, PROT_READ, MAP_SHARED, fd, 0);
    CHECK(map != MAP_FAILED && map[4] == 'o' && munmap(map, 5) == 0);
    CHECK_INT(close(fd), 0);
    CHECK_ERRNO(close(fd), -1, EBADF);
    fd = _open(name, _O_RDONLY | _O_BINARY);
    CHECK_INT(_lseeki64(fd, -1, SEEK_END), 4);
    CHECK(_telli64(fd) == 4 && _filelengthi64(fd) == 5);
    FILE *stream = fdopen(fd, "rb");
    CHECK(_fseeki64(stream, 2, SEEK_SET) == 0 && _ftelli64(stream) == 2 && ftello64(stream) == 2 && fclose(stream) == 0);
    CHECK_INT(stat(name, &status), 0);
    CHECK_INT(status.st_mode & _S_IFMT, _S_IFREG);
    struct _stat same;
    struct _stati64 wide;
    CHECK(_stat(name, &same) == 0 && _stati64(name, &wide) == 0 && same.st_size + wide.st_size == 10);
    CHECK(S_ISREG(status.st_mode) && status.st_size == 5);
    CHECK_INT(access(name, R_OK | W_OK), 0);
    CHECK_INT(mkdir("io-posix", 0700), 0);
    CHECK_INT(chdir("io-posix"), 0);
    CHECK(strstr(getcwd(text, sizeof text) ? text : "", "io-posix") || errno == ERANGE);
    CHECK_INT(chdir(".."), 0);
    DIR *dir = opendir("io-posix");
    CHECK(dir && readdir(dir) && closedir(dir) == 0);
    CHECK_INT(rmdir("io-posix"), 0);
    CHECK_INT(unlink(name), 0);
    regex_t expression;
    CHECK_INT(regcomp(&expression, "^h.*x$", REG_EXTENDED | REG_NOSUB), 0);
    CHECK_INT(regexec(&expression, "hello, posix", 0, NULL, 0), 0);
    regfree(&expression);
    ENTRY item = {text, NULL};
    CHECK(hcreate(1) && hsearch(item, ENTER) && hsearch(item, FIND)->key == text);
    hdestroy();
    CHECK_INT(strcasecmp("PoSiX", "posix"), 0);
    CHECK(stricmp("PoSiX", "posix") == 0 && strnicmp("PoST", "posix", 3) == 0);
    CHECK_INT(setmode(STDOUT_FILENO, 0), O_TEXT);
    CHECK_INT(fileno(stdout), STDOUT_FILENO);
    CHECK_INT(putenv("POSIXLY=1"), 0);
    CHECK_STR(getenv("POSIXLY"), "1");
    FILE *pipe = popen("exit 3", "r");
    CHECK_INT(pclose(pipe), 3);
    return check_done();
}
