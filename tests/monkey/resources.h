#pragma once

// What a program holds of memory, files and the display, and whether that grows.

#include <cstddef>
#include <string>
#include <vector>

namespace zel::test {

struct Resources {
    double heap = 0;        ///< bytes that are allocated
    double resident = 0;    ///< bytes
    double descriptors = 0; ///< files, sockets and the like that are open
    double pixmaps = 0;     ///< of all programs on the display
    double displayed = 0;   ///< other resources on the display: windows, pictures, cursors
    double topLevels = 0;   ///< windows of the toolkit
};

/// What is held now.
Resources LookAtResources();

/// A course of what is held, each time that the same was done.
class Course {
public:
    Course() { m_points.reserve(1 << 17); } // or it would measure itself
    void Note() { m_points.push_back(LookAtResources()); }
    /// The last third holds no more than the second, but for some slack for what the system keeps of its own now and
    /// then. Prints what each time takes.
    /// @param name         of what was done
    /// @param bytesAtATime of the heap that it may take each time
    void ExpectFlat(const std::string& name, double bytesAtATime) const;

private:
    /// By how much a quantity grows in a third of the times, from the middle of the second third to that of the last.
    double GetGrowth(double Resources::*quantity) const;

    std::vector<Resources> m_points;
};

} // namespace zel::test
