#include "core/CRijndael.h"

#include "core/falha.h"
#include "core/literais.h"

#include <algorithm>
#include <bit>

namespace {

constexpr int palavras = 3; // of block and key, as the system uses the cipher
constexpr int bytesDoBloco = 4 * palavras;
constexpr int bytesDoComprimento = 4;
constexpr qsizetype bytesDaChave = 32;

constexpr quint8 duplo(quint8 x) {
    return static_cast<quint8>((x << 1) ^ (x & 0x80 ? 0x1B : 0));
}

constexpr quint8 byteDe(quint32 palavra, int linha) {
    return static_cast<quint8>(palavra >> (8 * linha));
}

constexpr quint32 palavraDe(quint8 a, quint8 b, quint8 c, quint8 d) {
    return a | quint32(b) << 8 | quint32(c) << 16 | quint32(d) << 24;
}

QByteArray utf16(const QString &texto) {
    QByteArray bytes;
    bytes.reserve(2 * texto.size());
    for (const QChar c : texto) {
        bytes += static_cast<char>(c.cell());
        bytes += static_cast<char>(c.row());
    }
    return bytes;
}

QString textoDeUtf16(const QByteArray &bytes) {
    QString texto;
    texto.reserve(bytes.size() / 2);
    for (qsizetype i = 0; i + 1 < bytes.size(); i += 2)
        texto += QChar(static_cast<uchar>(bytes[i]), static_cast<uchar>(bytes[i + 1]));
    return texto;
}

// Unlike QByteArray::fromHex, which skips what is no digit.
std::optional<QByteArray> bytesDeHexadecimal(const QString &texto) {
    const auto digito = [](QChar c) {
        const QChar maiuscula = c.toUpper();
        return (c >= u'0' && c <= u'9') || (c < u'\x80' && maiuscula >= u'A' && maiuscula <= u'F');
    };
    if (texto.size() % 2 != 0 || !std::all_of(texto.begin(), texto.end(), digito))
        return {};
    return QByteArray::fromHex(texto.toLatin1());
}

std::span<quint8> blocoEm(QByteArray &bytes, qsizetype posicao) {
    return {reinterpret_cast<quint8 *>(bytes.data()) + posicao, bytesDoBloco};
}

} // namespace

void CRijndael::gentables() {
    // Powers of the generator 3 give products and inverses.
    std::array<quint8, 256> potencia{};
    std::array<quint8, 256> logaritmo{};
    quint8 x = 1;
    for (int i = 0; i < 255; ++i) {
        potencia[i] = x;
        logaritmo[x] = static_cast<quint8>(i);
        x = static_cast<quint8>(x ^ duplo(x));
    }
    const auto produto = [&](quint8 a, quint8 b) -> quint8 {
        return a && b ? potencia[(logaritmo[a] + logaritmo[b]) % 255] : 0;
    };
    for (int i = 0; i < 256; ++i) {
        const quint8 inverso = i ? potencia[(255 - logaritmo[i]) % 255] : 0;
        const auto s = static_cast<quint8>(inverso ^ std::rotl(inverso, 1) ^ std::rotl(inverso, 2) ^
                                           std::rotl(inverso, 3) ^ std::rotl(inverso, 4) ^ 0x63);
        m_caixa[i] = s;
        m_caixaInversa[s] = static_cast<quint8>(i);
        m_mistura[i] = palavraDe(duplo(s), s, s, static_cast<quint8>(duplo(s) ^ s));
        const auto b = static_cast<quint8>(i);
        m_misturaInversa[i] = palavraDe(produto(14, b), produto(9, b), produto(13, b), produto(11, b));
    }
}

quint32 CRijndael::substituir(quint32 p) const {
    return palavraDe(m_caixa[byteDe(p, 0)], m_caixa[byteDe(p, 1)], m_caixa[byteDe(p, 2)], m_caixa[byteDe(p, 3)]);
}

void CRijndael::gkey(int nb, int nk, std::span<const quint8> chave) {
    if (nb < 3 || nb > 8 || nk < 3 || nk > 8 || chave.size() < size_t(4 * nk))
        throw Falha(erros::chamadaInvalida, u"Tamanho de bloco ou de chave inválido."_s);
    m_nb = nb;
    m_voltas = 6 + std::max(nb, nk);
    m_desvios = nb < 8 ? std::array{0, 1 % nb, 2 % nb, 3 % nb} : std::array{0, 1, 3, 4};

    for (int i = 0; i < nk; ++i)
        m_chaves[i] = palavraDe(chave[4 * i], chave[4 * i + 1], chave[4 * i + 2], chave[4 * i + 3]);
    quint8 constante = 1;
    for (int i = nk; i < nb * (m_voltas + 1); ++i) {
        quint32 t = m_chaves[i - 1];
        if (i % nk == 0) {
            t = substituir(std::rotr(t, 8)) ^ constante;
            constante = duplo(constante);
        } else if (nk > 6 && i % nk == 4) {
            t = substituir(t);
        }
        m_chaves[i] = m_chaves[i - nk] ^ t;
    }
}

CRijndael::Colunas CRijndael::lerBloco(std::span<const quint8> bloco) const {
    Colunas c{};
    for (int j = 0; j < m_nb; ++j)
        c[j] = palavraDe(bloco[4 * j], bloco[4 * j + 1], bloco[4 * j + 2], bloco[4 * j + 3]);
    return c;
}

void CRijndael::escreverBloco(const Colunas &c, std::span<quint8> bloco) const {
    for (int i = 0; i < 4 * m_nb; ++i)
        bloco[i] = byteDe(c[i / 4], i % 4);
}

void CRijndael::Encrypt(std::span<quint8> bloco) const {
    Colunas a = lerBloco(bloco);
    for (int j = 0; j < m_nb; ++j)
        a[j] ^= m_chaves[j];
    for (int volta = 1; volta <= m_voltas; ++volta) {
        Colunas b{};
        for (int j = 0; j < m_nb; ++j) {
            quint32 p = m_chaves[volta * m_nb + j];
            for (int linha = 0; linha < 4; ++linha) {
                const quint8 x = byteDe(a[(j + m_desvios[linha]) % m_nb], linha);
                // The last round has no column mix.
                p ^= volta < m_voltas ? std::rotl(m_mistura[x], 8 * linha) : quint32(m_caixa[x]) << (8 * linha);
            }
            b[j] = p;
        }
        a = b;
    }
    escreverBloco(a, bloco);
}

void CRijndael::Decrypt(std::span<quint8> bloco) const {
    Colunas a = lerBloco(bloco);
    for (int j = 0; j < m_nb; ++j)
        a[j] ^= m_chaves[m_voltas * m_nb + j];
    for (int volta = m_voltas - 1; volta >= 0; --volta) {
        Colunas b{};
        for (int j = 0; j < m_nb; ++j) {
            quint32 p = m_chaves[volta * m_nb + j];
            for (int linha = 0; linha < 4; ++linha)
                p ^= quint32(m_caixaInversa[byteDe(a[(j + m_nb - m_desvios[linha]) % m_nb], linha)]) << (8 * linha);
            b[j] = p;
            if (volta == 0)
                continue;
            b[j] = 0;
            for (int linha = 0; linha < 4; ++linha)
                b[j] ^= std::rotl(m_misturaInversa[byteDe(p, linha)], 8 * linha);
        }
        a = b;
    }
    escreverBloco(a, bloco);
}

void CRijndael::prepararChave(const QByteArray &chave) {
    std::array<quint8, bytesDaChave> tampao{};
    std::copy_n(chave.begin(), std::min(chave.size(), bytesDaChave), tampao.begin());
    gentables();
    gkey(palavras, palavras, tampao);
}

QByteArray CRijndael::EncryptData(const QByteArray &dados, const QByteArray &chave) {
    prepararChave(chave);
    const auto comprimento = static_cast<quint32>(dados.size());
    QByteArray total;
    for (int i = 0; i < bytesDoComprimento; ++i)
        total += static_cast<char>(byteDe(comprimento, i));
    total += dados;
    total.append((bytesDoBloco - total.size() % bytesDoBloco) % bytesDoBloco, '\0');
    for (qsizetype i = 0; i < total.size(); i += bytesDoBloco)
        Encrypt(blocoEm(total, i));
    return total;
}

std::optional<QByteArray> CRijndael::DecryptData(const QByteArray &cifrados, const QByteArray &chave) {
    if (cifrados.isEmpty() || cifrados.size() % bytesDoBloco != 0)
        return {};
    prepararChave(chave);
    QByteArray total = cifrados;
    for (qsizetype i = 0; i < total.size(); i += bytesDoBloco)
        Decrypt(blocoEm(total, i));
    quint32 comprimento = 0;
    for (int i = 0; i < bytesDoComprimento; ++i)
        comprimento |= quint32(static_cast<uchar>(total[i])) << (8 * i);
    if (comprimento > quint64(total.size() - bytesDoComprimento))
        return {};
    return total.mid(bytesDoComprimento, comprimento);
}

QString CRijndael::JustCrypter(const QString &texto, const QString &frase) {
    return QString::fromLatin1(EncryptData(utf16(texto), utf16(frase)).toHex().toUpper());
}

QString CRijndael::JustDécrypter(const QString &hexadecimal, const QString &frase) {
    const std::optional<QByteArray> cifrados = bytesDeHexadecimal(hexadecimal);
    if (!cifrados)
        return {};
    const std::optional<QByteArray> dados = DecryptData(*cifrados, utf16(frase));
    // Half a character at the end cannot have been a text.
    return dados && dados->size() % 2 == 0 ? textoDeUtf16(*dados) : QString();
}
