#include "tests/apoio/filho.h"

#include <csignal>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

Filho::Filho(const std::function<QByteArray()> &corpo, Quem quem) {
    int tubo[2];
    if (::pipe(tubo) != 0)
        throw std::runtime_error("pipe");
    m_pid = ::fork();
    if (m_pid == 0) {
        ::close(tubo[0]);
        constexpr uid_t ninguem = 65534;
        if (quem == Quem::Ninguem && ::geteuid() == 0 && (::setgid(ninguem) != 0 || ::setuid(ninguem) != 0))
            ::_exit(2);
        QByteArray resultado;
        try {
            resultado = corpo();
        } catch (const std::exception &e) {
            resultado = QByteArray("exception: ").append(e.what());
        }
        const ssize_t escritos = ::write(tubo[1], resultado.constData(), static_cast<size_t>(resultado.size()));
        ::_exit(escritos == resultado.size() ? 0 : 3); // no destructor of the parent's objects
    }
    ::close(tubo[1]);
    m_tubo = tubo[0];
}

Filho::~Filho() {
    matar();
    ::close(m_tubo);
}

QByteArray Filho::esperar() {
    QByteArray tudo;
    char parte[4096];
    for (ssize_t n = 0; (n = ::read(m_tubo, parte, sizeof parte)) > 0;)
        tudo.append(parte, n);
    if (m_pid > 0)
        ::waitpid(m_pid, nullptr, 0);
    m_pid = -1;
    return tudo;
}

void Filho::matar() {
    if (m_pid <= 0)
        return;
    ::kill(m_pid, SIGKILL);
    ::waitpid(m_pid, nullptr, 0);
    m_pid = -1;
}
