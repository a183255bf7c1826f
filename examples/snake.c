/*
 * snake - the game, on the console: steer with the arrow keys, eat the food, touch nothing else.
 *
 *   snake [-s] [SEED]
 *
 * With -s the snake waits for a key before every step; any key but an arrow goes straight on. q ends the
 * game. The seed of the random numbers says where the food appears.
 */
#include <conio.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>

enum { LEFT = 2, TOP = 3, WIDTH = 30, HEIGHT = 12, CELLS = WIDTH * HEIGHT };
enum { BLACK = 0, GREEN = 10, RED = 12, YELLOW = 14, WHITE = 15, BLUE = 1 };
enum { EXTENDED = 0xE0, UP = 0x48, BACK = 0x4B, FORTH = 0x4D, DOWN = 0x50 };

typedef struct {
    int x, y;
} Place;

/* The snake's cells in a ring, the head at `head`. */
static Place ring[CELLS];
static int head, length = 4;
static char board[HEIGHT][WIDTH]; /* 1: a part of the snake */
static Place food, direction = {1, 0};

static Place *part(int from_head) { return &ring[(head + CELLS - from_head) % CELLS]; }

static void draw(Place at, int colour, int character)
{
    _gotoxy(LEFT + at.x, TOP + at.y);
    _textcolor(colour);
    _putch(character);
}

static void draw_field(void)
{
    _textbackground(BLACK);
    _textcolor(WHITE);
    _clrscr();
    for (int y = 0; y < HEIGHT + 2; ++y) {
        _gotoxy(LEFT - 1, TOP - 1 + y);
        _putch('|');
        for (int x = 0; x < WIDTH; ++x) _putch(y == 0 || y == HEIGHT + 1 ? '-' : ' ');
        _putch('|');
    }
}

static void say(const char *text)
{
    _gotoxy(1, TOP + HEIGHT + 2);
    _textcolor(WHITE);
    _clreol();
    _cputs(text);
}

static void show_score(void)
{
    _gotoxy(1, 1);
    _textbackground(BLUE);
    _textcolor(YELLOW);
    _cprintf("snake  length %3d  at %2d,%2d", length, part(0)->x, part(0)->y);
    _clreol();
    _textbackground(BLACK);
}

static void place_food(void)
{
    do {
        food.x = rand() % WIDTH;
        food.y = rand() % HEIGHT;
    } while (board[food.y][food.x]);
    draw(food, RED, '*');
}

static void turn(int code)
{
    Place to = {(code == FORTH) - (code == BACK), (code == DOWN) - (code == UP)};
    if ((to.x || to.y) && (to.x != -direction.x || to.y != -direction.y)) direction = to;
}

/* Whether the snake lives on. Its last cell is free again when the head comes there. */
static int step(void)
{
    Place from = *part(0), to = {from.x + direction.x, from.y + direction.y}, last = *part(length - 1);
    int eats = to.x == food.x && to.y == food.y;
    if (!eats) {
        board[last.y][last.x] = 0;
        draw(last, WHITE, ' ');
    }
    if (to.x < 0 || to.y < 0 || to.x >= WIDTH || to.y >= HEIGHT || board[to.y][to.x]) return 0;
    head = (head + 1) % CELLS;
    *part(0) = to;
    board[to.y][to.x] = 1;
    draw(from, GREEN, 'o');
    draw(to, GREEN, '@');
    if (eats && ++length < CELLS) place_food();
    return length < CELLS;
}

/* Takes what was typed; 0 to end the game. */
static int steer(void)
{
    int key = _getch();
    if (key == EXTENDED || key == 0) turn(_getch());
    return key != 'q' && key != EOF;
}

static int play(int by_keys)
{
    static const struct timespec tick = {0, 150000000};
    for (;;) {
        show_score();
        if (!by_keys) _nanosleep(&tick, NULL);
        if ((by_keys || _kbhit()) && !steer()) return 0;
        if (!step()) return 1;
    }
}

int main(int argc, char **argv)
{
    int by_keys = argc > 1 && strcmp(argv[1], "-s") == 0;
    char answer[32] = {28};
    srand(argc > 1 + by_keys ? (unsigned)atoi(argv[1 + by_keys]) : (unsigned)time(NULL));
    draw_field();
    if (_wherex() < 0) {
        fputs("snake: there is no console\n", stderr);
        return EXIT_FAILURE;
    }
    for (int i = 0; i < length; ++i) {
        Place at = {3 + i, HEIGHT / 2};
        head = i;
        *part(0) = at;
        board[at.y][at.x] = 1;
        draw(at, GREEN, i == length - 1 ? '@' : 'o');
    }
    place_food();
    say(play(by_keys) ? "The snake has met its end. Your name: " : "Goodbye. Your name: ");
    if (_cgets(answer) && answer[1]) _cprintf("%s reached a length of %d\r\n", answer + 2, length);
    return EXIT_SUCCESS;
}
