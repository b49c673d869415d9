#pragma once

#include <QByteArray>

#include <functional>
#include <sys/types.h>

// A second process, for what two programs do to one file. It shares nothing with the test but the files; its body's
// result comes back through a pipe.
class Filho {
public:
    enum class Quem { Mesmo, Ninguem }; // Ninguem: without the privileges of root, whom no permission stops
    explicit Filho(const std::function<QByteArray()> &corpo, Quem quem = Quem::Mesmo);
    ~Filho(); // kills and reaps
    Filho(const Filho &) = delete;
    Filho &operator=(const Filho &) = delete;

    QByteArray esperar(); // the body's result, once it has ended
    void matar();         // at once, without any tidying up

private:
    pid_t m_pid = -1;
    int m_tubo = -1;
};
