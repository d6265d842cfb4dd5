#pragma once

// What GTK and the libraries beneath it complain of: warnings and worse, which go to standard error otherwise.

#include "tests/support/system_dialogs.h"

#include <string>
#include <vector>

namespace zel::test {

/// All complaints since the first call; to be emptied by whoever has looked at them.
inline std::vector<std::string>& GLibComplaints() {
    struct Field {
        const char* key;
        const void* value;
        long length;
    };
    using Writer = int (*)(int level, const Field* fields, std::size_t count, void* data);
    static std::vector<std::string> complaints;
    static const bool once = [] {
        const Writer write = [](int level, const Field* fields, std::size_t count, void*) {
            constexpr int warningOrWorse = 1 << 2 | 1 << 3 | 1 << 4;
            for (std::size_t i = 0; i < count; ++i)
                if ((level & warningOrWorse) != 0 && std::string(fields[i].key) == "MESSAGE")
                    complaints.emplace_back(static_cast<const char*>(fields[i].value));
            return 1; // handled
        };
        OfSystem<void(Writer, void*, void*)>("g_log_set_writer_func")(write, nullptr, nullptr);
        return true;
    }();
    static_cast<void>(once);
    return complaints;
}

} // namespace zel::test
