// What gcc and clang call for the multiplication and division of complex numbers.

extern "C" {

double _Complex __cxmul(double _Complex x, double _Complex y);
double _Complex __cxdiv(double _Complex x, double _Complex y);

double _Complex __muldc3(double a, double b, double c, double d) {
    return __cxmul(__builtin_complex(a, b), __builtin_complex(c, d));
}

double _Complex __divdc3(double a, double b, double c, double d) {
    return __cxdiv(__builtin_complex(a, b), __builtin_complex(c, d));
}

// Through double, in which the products of floats are exact.
float _Complex __mulsc3(float a, float b, float c, float d) {
    double _Complex result = __muldc3(a, b, c, d);
    return __builtin_complex(static_cast<float>(__real__ result),
                             static_cast<float>(__imag__ result));
}

float _Complex __divsc3(float a, float b, float c, float d) {
    double _Complex result = __divdc3(a, b, c, d);
    return __builtin_complex(static_cast<float>(__real__ result),
                             static_cast<float>(__imag__ result));
}

} // extern "C"
