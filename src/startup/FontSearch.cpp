#include "FontSearch.h"

#include <fontconfig/fontconfig.h>

#include <future>

namespace FontSearch {
namespace {

std::future<void> &Search()
{
    static std::future<void> s_search;
    return s_search;
}

} // namespace

void Start()
{
    // What cannot be found is told when it is missed.
    Search() = std::async(std::launch::async, [] { static_cast<void>(::FcInit()); });
}

void Wait()
{
    if (Search().valid())
        Search().wait();
}

} // namespace FontSearch
