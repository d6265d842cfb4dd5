#pragma once

#include <wx/debug.h>

/// An assertion that names the source and the qualified function, as hosts know them, and lets the operation go on.
/// After it the code must still be safe. Silent where the host has turned the toolkit's assertions off.
/// @param source, function  plain texts, such as "mapping" and "zel::zel_MappingModule::CreateMenu"
#define zel_ASSERT(condition, source, function)                                                                        \
    do {                                                                                                               \
        if (!(condition) && wxTheAssertHandler != nullptr)                                                             \
            wxOnAssert(source, __LINE__, function, #condition);                                                        \
    } while (false)
