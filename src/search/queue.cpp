#include <search.h>

namespace {

// How an element of a list begins.
struct Link {
    Link *next, *previous;
};

} // namespace

extern "C" {

void _insque(void *element, void *pred) {
    auto *link = static_cast<Link *>(element), *previous = static_cast<Link *>(pred);
    link->previous = previous;
    link->next = previous ? previous->next : nullptr;
    if (link->next) link->next->previous = link;
    if (previous) previous->next = link;
}

void _remque(void *element) {
    auto *link = static_cast<Link *>(element);
    if (link->next) link->next->previous = link->previous;
    if (link->previous) link->previous->next = link->next;
}

} // extern "C"
