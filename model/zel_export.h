#pragma once

/// Marks what hosts may use of the viewer library; everything else stays hidden inside it. As in the core, class
/// templates, exceptions and the types of events need it, or a `catch` and a `Bind` fail across the library's border.
#define ZEL_EXPORT __attribute__((visibility("default")))
