#include "simulator/botao/pty.h"

#include <QFile>
#include <QThread>

#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

namespace simulador {

Pty::~Pty() {
    desligar();
}

void Pty::desligar() {
    if (m_fd >= 0)
        ::close(m_fd);
    m_fd = -1;
}

bool Pty::abrir() {
    m_fd = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK);
    if (m_fd < 0 || ::grantpt(m_fd) != 0 || ::unlockpt(m_fd) != 0)
        return false;
    char nome[64];
    if (::ptsname_r(m_fd, nome, sizeof nome) != 0)
        return false;
    m_caminho = QFile::decodeName(nome);
    // Raw from the start, so that nothing is echoed before the other side has set it up.
    const int outro = ::open(nome, O_RDWR | O_NOCTTY | O_CLOEXEC);
    termios modo{};
    if (outro < 0 || ::tcgetattr(outro, &modo) != 0)
        return false;
    ::cfmakeraw(&modo);
    ::tcsetattr(outro, TCSANOW, &modo);
    ::close(outro);
    return true;
}

void Pty::servir(int ms) {
    pollfd espera{m_fd, POLLIN, 0};
    if (m_fd < 0 || ::poll(&espera, 1, ms) <= 0)
        return;
    char bytes[512];
    const auto n = ::read(m_fd, bytes, sizeof bytes);
    if (n > 0) {
        m_aberto = true;
        const QByteArray resposta = m_adaptador.receber(QByteArray(bytes, n));
        for (qsizetype i = 0; i < resposta.size();) {
            const auto escritos = ::write(m_fd, resposta.constData() + i, size_t(resposta.size() - i));
            if (escritos <= 0)
                break; // nobody reads: a serial line loses bytes too
            i += escritos;
        }
        return;
    }
    if (espera.revents & POLLHUP) {
        if (std::exchange(m_aberto, false))
            m_adaptador.ligar();
        QThread::msleep(unsigned(std::min(ms, 5))); // a closed end reports itself at once, on and on
    }
}

} // namespace simulador
