#pragma once

#include <QString>

namespace onewire {

// Keeps other programs away from an adapter for as long as it lives; the system lets go of it if the program dies.
// Two spellings of one path are one adapter.
class Trinco {
public:
    explicit Trinco(const QString &caminho);
    ~Trinco();
    Trinco(const Trinco &) = delete;
    Trinco &operator=(const Trinco &) = delete;
    bool preso() const { return m_fd >= 0; }
    static QString ficheiro(const QString &caminho);

private:
    int m_fd = -1;
};

} // namespace onewire
