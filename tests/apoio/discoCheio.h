#pragma once

#include <csignal>
#include <stdexcept>
#include <sys/resource.h>

// A bound on the size of files acts as a full disk does: a write in the middle fails.
class DiscoCheio {
public:
    explicit DiscoCheio(rlim_t bytes) : m_sinal(std::signal(SIGXFSZ, SIG_IGN)) {
        if (getrlimit(RLIMIT_FSIZE, &m_antes) != 0)
            throw std::runtime_error("getrlimit");
        const rlimit pouco{bytes, m_antes.rlim_max};
        setrlimit(RLIMIT_FSIZE, &pouco);
    }
    ~DiscoCheio() {
        setrlimit(RLIMIT_FSIZE, &m_antes);
        std::signal(SIGXFSZ, m_sinal);
    }
    DiscoCheio(const DiscoCheio &) = delete;
    DiscoCheio &operator=(const DiscoCheio &) = delete;

private:
    rlimit m_antes{};
    void (*m_sinal)(int);
};
