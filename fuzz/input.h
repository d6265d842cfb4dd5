#pragma once

// What the targets share: inputs as files, numbers out of inputs, promises.

#include <cstddef>
#include <string>
#include <string_view>

namespace fuzz {

/// A file in memory whose contents change from input to input. It has a name for whoever opens files by name.
class MemoryFile {
public:
    MemoryFile(); ///< has no place in any folder
    /// A file of this name, which is made and stays. In the folder for temporary files, that lies in memory.
    explicit MemoryFile(const std::string& fileName);
    ~MemoryFile();
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    void Set(std::string_view bytes); ///< takes the place of what it held
    const char* GetName() const { return name.c_str(); }

private:
    int descriptor;
    std::string name;
};

/// A folder of this process's own among the temporary files. It goes with everything in it when the program ends.
const std::string& GetScratchFolder();

/// Ends the program where a promise is broken, and says which.
void Require(bool holds, const char* promise);

/// Takes numbers from the front of an input; from its end on they are 0.
class Numbers {
public:
    explicit Numbers(std::string_view from) : bytes(from) {}

    template <typename N>
    N Take() {
        N number{};
        TakeBytes(&number, sizeof number);
        return number;
    }
    std::string_view GetRest() const { return bytes; }

private:
    void TakeBytes(void* to, std::size_t count);
    std::string_view bytes;
};

} // namespace fuzz
