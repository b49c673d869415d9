#include "data/sqlite/lugarDoFicheiro.h"

#include <QStringBuilder>

#include <sys/stat.h>

LugarDoFicheiro::LugarDoFicheiro(const QByteArray &caminho)
    : m_caminho(caminho), m_base(de(caminho)), m_diario(de(caminho + "-wal")) {}

LugarDoFicheiro::Ficheiro LugarDoFicheiro::de(const QByteArray &caminho) {
    struct stat st {};
    if (::stat(caminho.constData(), &st) != 0)
        return {};
    return {true, st.st_dev, st.st_ino};
}

bool LugarDoFicheiro::mantem() const {
    return de(m_caminho) == m_base && (!m_diario.existe || de(m_caminho + "-wal") == m_diario);
}
