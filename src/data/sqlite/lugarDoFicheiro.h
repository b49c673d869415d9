#pragma once

#include <QByteArray>

#include <sys/types.h>

// Which file a path led to, and which log lay beside it, when the database was opened. The engine goes on writing to
// files that were deleted or replaced, as if nothing had happened.
class LugarDoFicheiro {
public:
    explicit LugarDoFicheiro(const QByteArray &caminho);
    bool mantem() const; // the same files are still there; may be asked on any thread

private:
    struct Ficheiro {
        bool existe = false;
        dev_t disco = 0;
        ino_t numero = 0;
        bool operator==(const Ficheiro &) const = default;
    };
    static Ficheiro de(const QByteArray &caminho);
    QByteArray m_caminho;
    Ficheiro m_base, m_diario;
};
