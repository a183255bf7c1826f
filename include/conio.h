/*
 * <conio.h> - customary on Windows: the console, its keyboard and its screen, past all descriptors and
 * streams.
 *
 * The functions use the console of the process (CONIN$ and CONOUT$) even when standard input and
 * output are redirected. It is opened on first use. If that fails it is not tried again: the functions
 * then return EOF, WEOF, -1, 0 or a null pointer, and those that set errno set EIO. Bytes are in the
 * locale's code page and are recoded from and to the console's; in the "C" locale they pass as they are.
 *
 * The output of one call is not mixed with that of other threads. Input takes no lock: only one thread
 * at a time should read the keyboard.
 */
#ifndef _CONIO_H
#define _CONIO_H

#include <_vexrt.h>

_VEXRT_BEGIN

/* ---- The keyboard, a key at a time ---- */

/*
 * Wait for a key and return its byte (0 to 255), or EOF (-1); _getche() also writes it on the screen. Keys
 * are not processed: Enter is '\r', Ctrl-C is 3. A function key, an arrow and the like give two bytes
 * in two calls: 0 or 0xE0, then the key's code, which stands in docs/console.md. What had been read or
 * pushed back before is returned without waiting and is not echoed.
 */
int _getch(void);
int _getche(void);

/* The same in UTF-16 units; WEOF when there is none. They have pending keys of their own. */
wint_t _getwch(void);
wint_t _getwche(void);

/* Push a byte (a unit) back, to be read next. Return it, or EOF (WEOF) when one is pending already, be
   it the second byte of a key, and for EOF itself. */
int _ungetch(int c);
wint_t _ungetwch(wint_t wc);

/* Whether a key is waiting that _getch() would return: 1 or 0. Keys that were read or pushed back before do
   not count. */
int _kbhit(void);

/* ---- Lines and formatted input ---- */

/*
 * Read a line, which the user can edit while typing. On entry buf[0] is the number of characters that may be
 * read, line end included; for narrow text at most 255. The buffer has room for three more. On return
 * buf[1] is the length and buf + 2 the text without its line end, terminated; the functions return buf + 2.
 * A longer line is read in pieces. Null with EIO, EINVAL (null buffer), or what the system says; the
 * text is then empty.
 */
char *_cgets(char *buf);
wchar_t *_cgetws(wchar_t *buf);

/*
 * As scanf() of <stdio.h>, reading keys with echo. Enter is white space and ends no call by itself: the
 * key that ends the last field does, and is the next that is read. EIO and EOF without a console.
 */
int _cscanf(const char *format, ...);
int _cwscanf(const wchar_t *format, ...);

/* ---- Text on the screen ---- */

/* Write a character. Return it (the byte as recoded for the console), or EOF (WEOF). '\n' only moves down:
   no function here adds a '\r', as the streams do. */
int _putch(int c);
wint_t _putwch(wchar_t wc);

/* Write a string. 0, or -1 with EIO, EINVAL (null), or what the system says. Narrow text of more than 4096
   bytes is not recoded. */
int _cputs(const char *s);
int _cputws(const wchar_t *s);

/* As printf() of <stdio.h>: the number of characters, or -1 with errno. */
int _cprintf(const char *format, ...);
int _cwprintf(const wchar_t *format, ...);

/* ---- The screen ---- */

/* Clear the screen (its whole buffer, cursor to the top left), or the line from the cursor on, with the
   current colours. */
void _clrscr(void);
void _clreol(void);

/* Moves the cursor to column x and row y; 1, 1 is the top left. EIO: it is not on the screen. */
void _gotoxy(int x, int y);

/* The column and the row of the cursor, from 1; -1 with errno. */
int _wherex(void);
int _wherey(void);

/* Set the colour of the text or of its background, 0 to 15: 1 blue, 2 green and 4 red added up, 8 for
   bright. Other bits of `c` do not count. */
void _textcolor(int c);
void _textbackground(int c);

_VEXRT_END

#endif
