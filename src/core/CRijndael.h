#pragma once

#include <QByteArray>
#include <QString>

#include <array>
#include <optional>
#include <span>

// Rijndael for blocks and keys of three to eight words, and the system's own use of it: blocks and keys of three
// words, each block alone, the data preceded by its length and filled up with zeros. Stored passwords depend on
// every detail of it. The larger sizes serve to check the same routines against published vectors.
class CRijndael {
public:
    void gentables();
    // Needs gentables(). Falha for sizes outside three to eight words or a key that is too short.
    void gkey(int palavrasDoBloco, int palavrasDaChave, std::span<const quint8> chave);
    // One block of four bytes a word, in place.
    void Encrypt(std::span<quint8> bloco) const;
    void Decrypt(std::span<quint8> bloco) const;

    QByteArray EncryptData(const QByteArray &dados, const QByteArray &chave);
    // Nothing when the bytes cannot have come from EncryptData.
    std::optional<QByteArray> DecryptData(const QByteArray &cifrados, const QByteArray &chave);

    // Texts: UTF-16 in, upper-case hexadecimal digits out, and back. A damaged text deciphers to the empty one.
    QString JustCrypter(const QString &texto, const QString &frase);
    QString JustDécrypter(const QString &hexadecimal, const QString &frase);

private:
    using Colunas = std::array<quint32, 8>;
    void prepararChave(const QByteArray &chave);
    quint32 substituir(quint32 palavra) const;
    Colunas lerBloco(std::span<const quint8> bloco) const;
    void escreverBloco(const Colunas &colunas, std::span<quint8> bloco) const;

    // A column is one word, its top row in the lowest byte.
    std::array<quint8, 256> m_caixa{};
    std::array<quint8, 256> m_caixaInversa{};
    std::array<quint32, 256> m_mistura{};        // substitution and column mix of a byte in the top row
    std::array<quint32, 256> m_misturaInversa{}; // inverse column mix alone
    std::array<quint32, 8 * 15> m_chaves{};
    std::array<int, 4> m_desvios{};
    int m_nb = 0;
    int m_voltas = 0;
};
