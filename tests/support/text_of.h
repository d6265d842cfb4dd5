#pragma once

#include "core/kepcore/kep_exceptions.h"

#include <functional>
#include <string>

/// The text of the exception of this very kind that a call throws, or "nothing thrown".
template <typename Failure = kep::InternalException>
std::string TextOf(const std::function<void()>& call) {
    try {
        call();
    } catch (const Failure& failure) {
        return failure.GetText();
    }
    return "nothing thrown";
}
