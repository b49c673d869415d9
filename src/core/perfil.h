#pragma once

#include <QByteArray>
#include <QHash>
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
        QByteArray bytes; // as in the file, with its end; only a line that is set anew is encoded again
        QString texto;    // without its end
    };
    struct Seccao {
        size_t linha = 0;
        size_t ultima = 0;                                         // the last line that says something
        mutable std::optional<QHash<QString, size_t>> chaves = {}; // made when first asked for
    };
    void separarLinhas(const QByteArray &bytes);
    template <qsizetype largura, qsizetype baixo>
    void separarLinhasDe(const QByteArray &bytes);
    void indexar();
    QHash<QString, size_t> &chavesDe(const Seccao &seccao) const;
    QString descodificar(const QByteArray &bytes) const;
    QByteArray codificar(const QString &texto) const;
    QString fimDeLinha() const;
    bool eUtf16() const { return m_codificacao == Codificacao::Utf16Le || m_codificacao == Codificacao::Utf16Be; }

    Codificacao m_codificacao = Codificacao::Utf8;
    QByteArray m_marca;
    std::vector<Linha> m_linhas;
    QHash<QString, Seccao> m_seccoes; // by folded name, the first of each
};
