#pragma once

#include <QFile>
#include <QIODevice>

#include <functional>

// A new file. It has a provisional name until manter() has brought it to the disk, which events do not wait for, and
// given it its own; before that it goes away with this object.
class FicheiroSeguro : public QIODevice {
public:
    // <passar> lets events run and may throw.
    FicheiroSeguro(const QString &nome, std::function<void()> passar);
    ~FicheiroSeguro() override;

    bool abrir(); // false when it exists already, under either name
    // On the disk, under its own name; it may be written to further.
    bool manter();
    bool recuar(qint64 tamanho); // to what it was
    qint64 tamanho() const { return m_ficheiro.size(); }
    QString nome() const { return m_nome; }
    QString erro() const { return m_ficheiro.errorString(); }

    // <base> and <fim> with a number between them, should the name be taken.
    static QString nomeLivre(const QString &base, const QString &fim);

protected:
    qint64 readData(char *, qint64) override { return -1; }
    qint64 writeData(const char *dados, qint64 total) override;

private:
    bool sincronizar();
    bool sincronizarComEventos();
    QString m_nome;
    QFile m_ficheiro;
    std::function<void()> m_passar;
    bool m_mantido = false;
};
