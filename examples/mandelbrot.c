/*
 * Draws the Mandelbrot set: as text, or as a picture in the PPM format.
 *
 *   mandelbrot [-p] [-w WIDTH] [-h HEIGHT] [-n LIMIT] [-c REAL,IMAGINARY] [-r RADIUS]
 *
 *   -p   a picture on standard output: mandelbrot -p -w 640 -h 480 >set.ppm
 *   -n   steps before a point counts as inside (256)
 *   -c   the middle (-0.5,0); -r half of the height (1.25)
 */
#include <complex.h>
#include <fcntl.h>
#include <math.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#ifdef _WIN32
#include <io.h>
#endif

struct view {
    double complex middle;
    double radius;
    int width, height, limit, picture;
};

/* The steps until z leaves the circle of radius 16, smoothed; -1: it does not. */
static double escape_time(double complex c, int limit)
{
    double complex z = 0;
    for (int step = 0; step < limit; ++step) {
        z = z * z + c;
        if (cabs(z) > 16) return step + 1 - log2(log(cabs(z)) / log(16));
    }
    return -1;
}

static double complex point_of(const struct view *view, int column, int row)
{
    /* A character is twice as high as it is wide. */
    double aspect = view->picture ? 1 : 0.5, unit = 2 * view->radius / view->height;
    return view->middle + unit * aspect * (column - (view->width - 1) / 2.0) -
           unit * I * (row - (view->height - 1) / 2.0);
}

static void put_character(double time)
{
    static const char shades[] = " .:-=+*#%@";
    int shade = time < 0 ? 9 : time < 1 ? 0 : (int)fmin(2 * log2(time), 8);
    putchar(shades[shade]);
}

static void put_color(double time)
{
    for (int i = 0; i < 3; ++i) {
        double wave = 0.5 - 0.5 * cos(sqrt(fmax(time, 0)) * (0.6 + 0.2 * i));
        putchar(time < 0 ? 0 : (int)lround(255 * wave));
    }
}

static void draw(const struct view *view)
{
    if (view->picture) printf("P6\n%d %d\n255\n", view->width, view->height);
    for (int row = 0; row < view->height; ++row) {
        for (int column = 0; column < view->width; ++column) {
            double time = escape_time(point_of(view, column, row), view->limit);
            if (view->picture) put_color(time);
            else put_character(time);
        }
        if (!view->picture) putchar('\n');
    }
}

static int usage(void)
{
    fputs("usage: mandelbrot [-p] [-w WIDTH] [-h HEIGHT] [-n LIMIT] [-c REAL,IMAGINARY] [-r RADIUS]\n", stderr);
    return 2;
}

static int read_options(struct view *view, int argc, char **argv)
{
    double real, imaginary;
    for (int i = 1; i < argc; ++i) {
        if (strcmp(argv[i], "-p") == 0) {
            view->picture = 1;
            continue;
        }
        if (argv[i][0] != '-' || strlen(argv[i]) != 2 || i + 1 == argc) return 0;
        const char *value = argv[++i];
        switch (argv[i - 1][1]) {
        case 'w': view->width = atoi(value); break;
        case 'h': view->height = atoi(value); break;
        case 'n': view->limit = atoi(value); break;
        case 'r': view->radius = atof(value); break;
        case 'c':
            if (sscanf(value, "%lf,%lf", &real, &imaginary) != 2) return 0;
            view->middle = CMPLX(real, imaginary);
            break;
        default: return 0;
        }
    }
    return view->width > 0 && view->height > 0 && view->limit > 0 && view->radius > 0;
}

int main(int argc, char **argv)
{
    struct view view = {CMPLX(-0.5, 0), 1.25, 78, 32, 256, 0};
    if (!read_options(&view, argc, argv)) return usage();
#ifdef _WIN32
    if (view.picture) _setmode(_fileno(stdout), O_BINARY);
#endif
    draw(&view);
    return ferror(stdout) != 0;
}
