#pragma once

// Data of ICS files, packed as other programs do.

#include <archive.h>
#include <archive_entry.h>
#include <gtest/gtest.h>

#include <string>

namespace ics_test {

/// Packs bytes with gzip, or with the old program "compress".
inline std::string Pack(const std::string& bytes, int (*filter)(archive*)) {
    std::string packed(bytes.size() * 2 + 1000, '\0');
    std::size_t used = 0;
    archive* writer = archive_write_new();
    EXPECT_EQ(ARCHIVE_OK, filter(writer));
    EXPECT_EQ(ARCHIVE_OK, archive_write_set_format_raw(writer));
    archive_write_set_bytes_in_last_block(writer, 1);
    EXPECT_EQ(ARCHIVE_OK, archive_write_open_memory(writer, packed.data(), packed.size(), &used));
    archive_entry* entry = archive_entry_new();
    archive_entry_set_filetype(entry, AE_IFREG);
    EXPECT_EQ(ARCHIVE_OK, archive_write_header(writer, entry));
    EXPECT_EQ(static_cast<la_ssize_t>(bytes.size()), archive_write_data(writer, bytes.data(), bytes.size()));
    archive_entry_free(entry);
    EXPECT_EQ(ARCHIVE_OK, archive_write_close(writer));
    archive_write_free(writer);
    packed.resize(used);
    return packed;
}

inline std::string Gzip(const std::string& bytes) {
    return Pack(bytes, &archive_write_add_filter_gzip);
}

inline std::string Compress(const std::string& bytes) {
    return Pack(bytes, &archive_write_add_filter_compress);
}

} // namespace ics_test
