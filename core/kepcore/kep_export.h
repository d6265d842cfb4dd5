#pragma once

/// Marks what other libraries and hosts may use. Everything else stays hidden inside its library. It is needed on
/// class templates too, and on the types they are instantiated with: a hidden argument hides the whole instance,
/// and then a `catch` or a `dynamic_cast` fails across the border of the library.
#define KEP_EXPORT __attribute__((visibility("default")))
