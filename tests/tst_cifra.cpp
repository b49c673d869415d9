#include "core/CRijndael.h"
#include "core/estado.h"
#include "core/falha.h"
#include "core/modEncriptPrincipal.h"
#include "core/modINI.h"
#include "core/modPassWord.h"
#include "tests/apoio/instalacao.h"
#include "tests/apoio/tabela.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QTest>

namespace {

using Bytes = std::vector<quint8>;

// The cipher a second time, slowly: no tables, products by shift and add, bytes in a matrix of rows.
namespace lento {

quint8 vezes(quint8 a, quint8 b) {
    int r = 0;
    for (int i = 0; i < 8; ++i)
        if (b >> i & 1)
            r ^= a << i;
    for (int i = 14; i >= 8; --i)
        if (r >> i & 1)
            r ^= 0x11B << (i - 8);
    return static_cast<quint8>(r);
}

quint8 caixa(quint8 x) {
    int inverso = 0;
    while (x && vezes(x, static_cast<quint8>(inverso)) != 1)
        ++inverso;
    int s = 0;
    for (int i = 0; i < 8; ++i) {
        int bit = 0x63 >> i & 1;
        for (const int k : {0, 4, 5, 6, 7})
            bit ^= inverso >> (i + k) % 8 & 1;
        s |= bit << i;
    }
    return static_cast<quint8>(s);
}

// The inverse of the affine step, then of the field.
quint8 caixaInversa(quint8 s) {
    int x = 0;
    for (int i = 0; i < 8; ++i)
        x |= ((s >> (i + 2) % 8 & 1) ^ (s >> (i + 5) % 8 & 1) ^ (s >> (i + 7) % 8 & 1) ^ (0x05 >> i & 1)) << i;
    int inverso = 0;
    while (x && vezes(static_cast<quint8>(x), static_cast<quint8>(inverso)) != 1)
        ++inverso;
    return static_cast<quint8>(inverso);
}

struct Cifra {
    int nb, nk;
    Bytes chaves;

    Cifra(int bloco, int chave, const Bytes &bytes)
        : nb(bloco), nk(chave), chaves(bytes.begin(), bytes.begin() + 4 * chave) {
        quint8 constante = 1;
        for (int i = nk; i < nb * (voltas() + 1); ++i) {
            Bytes t(chaves.end() - 4, chaves.end());
            if (i % nk == 0) {
                t = {caixa(t[1]), caixa(t[2]), caixa(t[3]), caixa(t[0])};
                t[0] ^= constante;
                constante = vezes(constante, 2);
            } else if (nk > 6 && i % nk == 4) {
                t = {caixa(t[0]), caixa(t[1]), caixa(t[2]), caixa(t[3])};
            }
            for (int k = 0; k < 4; ++k)
                chaves.push_back(chaves[4 * (i - nk) + k] ^ t[k]);
        }
    }
    int voltas() const { return 6 + std::max(nb, nk); }
    int desvio(int linha) const { return nb == 8 && linha > 1 ? linha + 1 : linha; }
    void juntarChave(Bytes &e, int volta) const {
        for (int i = 0; i < 4 * nb; ++i)
            e[i] ^= chaves[4 * nb * volta + i];
    }
    void misturar(Bytes &e, const std::array<quint8, 4> &factores) const {
        for (int c = 0; c < nb; ++c) {
            const Bytes a(e.begin() + 4 * c, e.begin() + 4 * c + 4);
            for (int r = 0; r < 4; ++r) {
                e[4 * c + r] = 0;
                for (int k = 0; k < 4; ++k)
                    e[4 * c + r] ^= vezes(factores[(k - r + 4) % 4], a[k]);
            }
        }
    }
    Bytes cifrar(Bytes e) const {
        juntarChave(e, 0);
        for (int volta = 1; volta <= voltas(); ++volta) {
            const Bytes a = e;
            for (int c = 0; c < nb; ++c)
                for (int r = 0; r < 4; ++r)
                    e[4 * c + r] = caixa(a[4 * ((c + desvio(r)) % nb) + r]);
            if (volta < voltas())
                misturar(e, {2, 3, 1, 1});
            juntarChave(e, volta);
        }
        return e;
    }
    Bytes decifrar(Bytes e) const {
        for (int volta = voltas(); volta >= 1; --volta) {
            juntarChave(e, volta);
            if (volta < voltas())
                misturar(e, {14, 11, 13, 9});
            const Bytes a = e;
            for (int c = 0; c < nb; ++c)
                for (int r = 0; r < 4; ++r)
                    e[4 * ((c + desvio(r)) % nb) + r] = caixaInversa(a[4 * c + r]);
        }
        juntarChave(e, 0);
        return e;
    }
};

} // namespace lento

Bytes bytesDe(const QByteArray &hexadecimal) {
    const QByteArray b = QByteArray::fromHex(hexadecimal);
    return {b.begin(), b.end()};
}

QString textoDe(const Bytes &bytes) {
    QString t;
    for (const quint8 b : bytes)
        t += u"%1"_s.arg(b, 2, 16, QChar(u'0')).toUpper();
    return t;
}

Bytes bytesAoAcaso(QRandomGenerator &acaso, int quantos) {
    Bytes b(quantos);
    for (quint8 &x : b)
        x = static_cast<quint8>(acaso.bounded(256));
    return b;
}

void guardarPWD(const QString &valor) {
    modINI::SaveSetting(estado().NomePrograma, u"CONFIGURACOES"_s, u"PWD"_s, valor);
}

QString lerPWD() {
    return modINI::GetSetting(estado().NomePrograma, u"CONFIGURACOES"_s, u"PWD"_s, u"(none)"_s);
}

} // namespace

class tst_cifra : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void vectoresPublicados() {
        const Bytes claro = bytesDe("00112233445566778899aabbccddeeff");
        CRijndael cifra;
        cifra.gentables();
        for (const auto &[nk, esperado] : {std::pair(4, "69c4e0d86a7b0430d8cdb78070b4c55a"),
                                           {6, "dda97ca4864cdfe06eaf70a0ec0d7191"},
                                           {8, "8ea2b7ca516745bfeafc49904b496089"}}) {
            cifra.gkey(4, nk, bytesDe("000102030405060708090a0b0c0d0e0f101112131415161718191a1b1c1d1e1f"));
            Bytes bloco = claro;
            cifra.Encrypt(bloco);
            QCOMPARE(bloco, bytesDe(esperado));
            cifra.Decrypt(bloco);
            QCOMPARE(bloco, claro);
        }
    }

    void igualAImplementacaoLenta() {
        struct Caso {
            int nb, nk, blocos;
        };
        QRandomGenerator acaso(20240315);
        CRijndael cifra;
        cifra.gentables();
        // The system's own sizes; most round constants; the offsets of eight words; the step of long keys.
        for (const auto &[nb, nk, blocos] : {Caso{3, 3, 60}, {6, 4, 4}, {8, 3, 4}, {8, 8, 4}}) {
            for (int i = 0; i < blocos; ++i) {
                const Bytes chave = bytesAoAcaso(acaso, 4 * nk);
                const Bytes claro = bytesAoAcaso(acaso, 4 * nb);
                const lento::Cifra outra(nb, nk, chave);
                cifra.gkey(nb, nk, chave);
                Bytes bloco = claro;
                cifra.Encrypt(bloco);
                QCOMPARE(bloco, outra.cifrar(claro));
                // Any block deciphers, also one that was never enciphered.
                bloco = claro;
                cifra.Decrypt(bloco);
                QCOMPARE(bloco, outra.decifrar(claro));
            }
        }
        QVERIFY_THROWS_EXCEPTION(Falha, cifra.gkey(2, 4, Bytes(32)));
        QVERIFY_THROWS_EXCEPTION(Falha, cifra.gkey(4, 9, Bytes(36)));
        QVERIFY_THROWS_EXCEPTION(Falha, cifra.gkey(4, 4, Bytes(15)));
    }

    // Framing, text form, pass phrase and block independence, against the slow cipher.
    void formaGuardada() {
        const lento::Cifra outra(3, 3, {'k', 0, 'e', 0, 'y', 0, 'Q', 0, '7', 0, 0, 0});
        for (const auto &[tamanho, digitos] : {std::pair(0, 24), {4, 24}, {10, 48}, {11, 72}, {200, 816}}) {
            Bytes dados = {static_cast<quint8>(2 * tamanho), static_cast<quint8>(2 * tamanho >> 8), 0, 0};
            QString texto;
            for (int i = 0; i < tamanho; ++i) {
                texto += QChar('0' + 301 * i); // far beyond Latin, half characters too
                dados.insert(dados.end(), {texto.back().cell(), texto.back().row()});
            }
            dados.resize(digitos / 2);
            QString esperado;
            for (auto i = dados.begin(); i != dados.end(); i += 12)
                esperado += textoDe(outra.cifrar(Bytes(i, i + 12)));
            QCOMPARE(modEncriptPrincipal::EncriptarString(texto), esperado);
            // A person who edits the file may write the digits small.
            QCOMPARE(modEncriptPrincipal::DesencriptarString(tamanho == 4 ? esperado.toLower() : esperado), texto);
        }
    }

    void valoresDanificados_data() {
        const Tabela<QString> caso("valor");
        const QString bom = modEncriptPrincipal::EncriptarString(u"Segredo12345"_s);
        caso("empty", {});
        caso("odd digits", bom.chopped(1));
        caso("part of a block", bom.chopped(2));
        caso("last block lost", bom.chopped(24));
        caso("digits of another script", QString(24, QChar(0x0661)));
        caso("blank inside", QString(bom).replace(10, 1, u" "_s));
        // A length field that asks for far more than is there, for one byte more, for half a character.
        CRijndael cifra;
        cifra.JustCrypter({}, u"keyQ7"_s);
        for (const char *claro : {"ffffffff4100420043004400", "090000004100420043004400", "070000004100420043004400"}) {
            Bytes bloco = bytesDe(claro);
            cifra.Encrypt(bloco);
            caso(claro, textoDe(bloco));
        }
    }
    void valoresDanificados() {
        QFETCH(QString, valor);
        const Instalacao inst(Instalacao::Base::Nenhuma);
        QCOMPARE(modEncriptPrincipal::DesencriptarString(valor), QString());
        guardarPWD(valor);
        for (const QString &tentativa : {u"Segredo12345"_s, u"Segredo"_s, u"ABCD"_s, u"Vistrel"_s, u" "_s, QString()})
            QVERIFY(!modPassWord::PassWordCorrecta(tentativa));
        QCOMPARE(modPassWord::AlterarPassWord(u"Vistrel"_s, u"n"_s, u"n"_s), modPassWord::Alteracao::PassWordInvalida);
    }

    void comparacao() {
        const Instalacao inst(Instalacao::Base::Nenhuma);
        for (const QString &palavra : {u"Abc ç"_s, u"Abc "_s}) {
            guardarPWD(modEncriptPrincipal::EncriptarString(palavra));
            QVERIFY(modPassWord::PassWordCorrecta(palavra));
            for (const QString &outra :
                 QStringList{palavra.toLower(), palavra.chopped(1), palavra + u'd', palavra + u' '})
                QVERIFY2(!modPassWord::PassWordCorrecta(outra), qPrintable(outra));
        }
        guardarPWD(modEncriptPrincipal::EncriptarString(u"   "_s));
        QVERIFY(!modPassWord::PassWordCorrecta(u"   "_s)); // blanks never open
    }

    // The factory password opens as long as none is stored.
    void alteracao_data() {
        using modPassWord::Alteracao;
        const Tabela<QString, QString, QString, Alteracao> caso("actual", "nova", "confirmacao", "esperado");
        caso("changed", u"Vistrel"_s, u"Nova ç"_s, u"Nova ç"_s, Alteracao::Alterada);
        caso("no current", {}, u"n"_s, u"n"_s, Alteracao::Incompleta);
        caso("no confirmation", u"Vistrel"_s, u"n"_s, {}, Alteracao::Incompleta);
        caso("new of blanks", u"Vistrel"_s, u"  "_s, u"  "_s, Alteracao::Incompleta);
        caso("wrong current comes first", u"vistrel"_s, u"n"_s, u"m"_s, Alteracao::PassWordInvalida);
        caso("wrong confirmation", u"Vistrel"_s, u"nova"_s, u"Nova"_s, Alteracao::ConfirmacaoIncorrecta);
    }
    void alteracao() {
        using modPassWord::Alteracao;
        QFETCH(QString, actual);
        QFETCH(QString, nova);
        QFETCH(QString, confirmacao);
        QFETCH(Alteracao, esperado);
        const Instalacao inst(Instalacao::Base::Nenhuma);
        QCOMPARE(modPassWord::AlterarPassWord(actual, nova, confirmacao), esperado);
        const bool mudou = esperado == Alteracao::Alterada;
        QCOMPARE(modPassWord::PassWordCorrecta(u"Vistrel"_s), !mudou);
        QCOMPARE(lerPWD(), mudou ? modEncriptPrincipal::EncriptarString(nova) : u"(none)"_s);
    }

    // A settings file that is there and says nothing has lost the password: the factory's must not open in its stead.
    void definicoesDanificadas_data() {
        const Tabela<std::optional<QByteArray>, bool> caso("ficheiro", "valeADeFabrica"); // none: a folder in its place
        caso("of a new installation", "[BD]\r\nMAIN=/x\r\n", true);
        caso("empty", "", false);
        caso("zeros", QByteArray(300, '\0'), false);
        caso("blank", "\r\n \r\n", false);
        caso("unreadable", {}, false);
    }
    void definicoesDanificadas() {
        QFETCH(std::optional<QByteArray>, ficheiro);
        QFETCH(bool, valeADeFabrica);
        const Instalacao inst(Instalacao::Base::Nenhuma);
        const QString caminho = inst.pastaINI() + u"/Vistrel.ini"_s;
        if (ficheiro)
            Instalacao::escreverFicheiro(caminho, *ficheiro);
        else
            QVERIFY(QDir().mkdir(caminho));
        const auto abre = [] {
            try {
                return modPassWord::PassWordCorrecta(u"Vistrel"_s) ? u"opens"_s : u"does not"_s;
            } catch (const Falha &f) {
                return f.descricao();
            }
        };
        for (const QString &vez : {u"as found"_s, u"after another key was stored"_s}) {
            const QString resultado = abre();
            QVERIFY2(valeADeFabrica ? resultado == u"opens" : resultado.contains(caminho),
                     qPrintable(vez + u": " + resultado));
            modINI::SaveSetting(u"Vistrel"_s, u"BD"_s, u"MAIN"_s, u"/y"_s);
        }
        QVERIFY(ficheiro ? QFile::remove(caminho) : QDir().rmdir(caminho));
        QCOMPARE(abre(), u"opens"_s);
    }

    void alteracaoQueNaoSeGuarda() {
        const Instalacao inst(Instalacao::Base::Nenhuma);
        const QString maior(modPassWord::maximoDeCaracteres, u'ç');
        QVERIFY_THROWS_EXCEPTION(Falha, modPassWord::AlterarPassWord(u"Vistrel"_s, maior + u'ç', maior + u'ç'));
        // The longest password comes back whole through the bounded read of the settings.
        QCOMPARE(modPassWord::AlterarPassWord(u"Vistrel"_s, maior, maior), modPassWord::Alteracao::Alterada);
        QVERIFY(modPassWord::PassWordCorrecta(maior));
        QVERIFY(QFile::rename(inst.pastaINI(), inst.ficheiro(u"longe"_s)));
        QVERIFY_THROWS_EXCEPTION(Falha, modPassWord::AlterarPassWord(u"Vistrel"_s, u"nova"_s, u"nova"_s));
        QVERIFY(modPassWord::PassWordCorrecta(u"Vistrel"_s));
    }
};

QTEST_GUILESS_MAIN(tst_cifra)
#include "tst_cifra.moc"
