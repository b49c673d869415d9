#pragma once

#include <QByteArray>
#include <QStringList>

#include <optional>
#include <vector>

// One settings file in memory: sections, "key=value" lines, everything else kept byte for byte.
// Names are compared without case and the first match wins. The file's encoding (UTF-8 with or without mark,
// UTF-16 with mark, Windows-1252) is recognised and kept; what it cannot hold is written as "?".
class Perfil {
public:
    enum class Codificacao { Utf8, Utf8Marca, Utf16Le, Utf16Be, Windows1252 };

    explicit Perfil(const QByteArray &bytes = {});
    std::optional<QString> valor(const QString &seccao, const QString &chave) const;
    void definir(const QString &seccao, const QString &chave, const QString &valor);
    QStringList seccoes() const;
    QStringList chaves(const QString &seccao) const;
    QByteArray bytes() const;
    Codificacao codificacao() const { return m_codificacao; }

private:
    struct Linha {
        QString texto; // without its end
        QString fim;   // "\r\n", "\n", "\r" or empty at the end of the file
    };
    void separarLinhas(const QString &texto);
    int procurarSeccao(const QString &seccao) const;
    int procurarChave(int aposLinha, const QString &chave) const;
    QString fimDeLinha() const;

    Codificacao m_codificacao = Codificacao::Utf8;
    std::vector<Linha> m_linhas;
};
