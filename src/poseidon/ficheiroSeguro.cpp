#include "poseidon/ficheiroSeguro.h"

#include "core/literais.h"

#include <QFileInfo>
#include <QThread>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <fcntl.h>
#include <thread>
#include <unistd.h>

namespace {

const QString provisorio = u".parte"_s;

// A new name lasts only once its folder is on the disk.
bool sincronizarPasta(const QString &caminho) {
    const int pasta = ::open(QFile::encodeName(caminho).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (pasta < 0)
        return false;
    const bool feito = ::fsync(pasta) == 0;
    ::close(pasta);
    return feito;
}

} // namespace

FicheiroSeguro::FicheiroSeguro(const QString &nome, std::function<void()> passar)
    : m_nome(nome), m_ficheiro(nome + provisorio), m_passar(std::move(passar)) {}

FicheiroSeguro::~FicheiroSeguro() {
    if (m_ficheiro.isOpen() && !m_mantido)
        m_ficheiro.remove();
}

bool FicheiroSeguro::abrir() {
    return !QFile::exists(m_nome) &&
           m_ficheiro.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered) &&
           open(QIODevice::WriteOnly | QIODevice::Unbuffered);
}

bool FicheiroSeguro::manter() {
    if (!sincronizarComEventos())
        return false;
    if (m_mantido)
        return true;
    if (std::rename(QFile::encodeName(m_nome + provisorio).constData(), QFile::encodeName(m_nome).constData()) != 0)
        return false;
    m_mantido = true;
    return sincronizarPasta(QFileInfo(m_nome).path());
}

bool FicheiroSeguro::sincronizar() {
    return m_ficheiro.flush() && ::fdatasync(m_ficheiro.handle()) == 0;
}

// A disk with a large commit behind it may take half a second.
bool FicheiroSeguro::sincronizarComEventos() {
    bool bem = false;
    std::atomic<bool> acabou = false;
    {
        const std::jthread disco([&] { // waited for on every way out
            bem = sincronizar();
            acabou = true;
        });
        while (!acabou) {
            m_passar();
            QThread::msleep(1);
        }
    }
    return bem;
}

bool FicheiroSeguro::recuar(qint64 tamanho) {
    return m_ficheiro.resize(tamanho) && m_ficheiro.seek(tamanho) && sincronizar();
}

QString FicheiroSeguro::nomeLivre(const QString &base, const QString &fim) {
    QString nome = base + fim;
    for (int n = 2; QFile::exists(nome) || QFile::exists(nome + provisorio); ++n)
        nome = u"%1 (%2)%3"_s.arg(base).arg(n).arg(fim);
    return nome;
}

qint64 FicheiroSeguro::writeData(const char *dados, qint64 total) {
    constexpr qint64 pedaco = 256 * 1024;
    for (qint64 feito = 0; feito < total;) {
        const qint64 agora = std::min(pedaco, total - feito);
        if (m_ficheiro.write(dados + feito, agora) != agora)
            return -1;
        feito += agora;
        m_passar();
    }
    return total;
}
