#pragma once

#include <csignal>
#include <sys/resource.h>

/// While one lives, files grow to so many bytes and no further, as on a full disk.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) : handler(std::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &before);
        const rlimit now{bytes, before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &now);
    }
    ~FileSizeLimit() {
        ::setrlimit(RLIMIT_FSIZE, &before);
        std::signal(SIGXFSZ, handler);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    void (*handler)(int);
    rlimit before{};
};
