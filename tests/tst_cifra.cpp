#include "core/CRijndael.h"
#include "core/modEncriptPrincipal.h"
#include "core/modPassWord.h"
#include "tests/apoio/instalacao.h"
#include "tests/apoio/ouro.h"

namespace {

using Bytes = std::vector<quint8>;

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

    // Golden values, of a second and slow implementation: the system's own sizes, most round constants, the offsets of
    // eight words, the step of long keys; then the stored form, with its framing, text form and pass phrase.
    void ouro() {
        QRandomGenerator acaso(20240315);
        CRijndael cifra;
        cifra.gentables();
        QString texto;
        for (const auto &[nb, nk] : {std::pair(3, 3), {6, 4}, {8, 3}, {8, 8}})
            for (int i = 0; i < 8; ++i) {
                const Bytes claro = bytesAoAcaso(acaso, 4 * nb);
                cifra.gkey(nb, nk, bytesAoAcaso(acaso, 4 * nk));
                // Any block deciphers, also one that was never enciphered.
                for (const auto passo : {&CRijndael::Encrypt, &CRijndael::Decrypt}) {
                    Bytes bloco = claro;
                    (cifra.*passo)(bloco);
                    texto += textoDe(bloco) + u'\n';
                }
            }
        for (const int tamanho : {0, 4, 10, 11, 200}) {
            QString claro;
            for (int i = 0; i < tamanho; ++i)
                claro += QChar('0' + 301 * i); // far beyond Latin, half characters too
            const QString cifrado = modEncriptPrincipal::EncriptarString(claro);
            texto += cifrado + u'\n';
            // A person who edits the file may write the digits small.
            QCOMPARE(modEncriptPrincipal::DesencriptarString(tamanho == 4 ? cifrado.toLower() : cifrado), claro);
        }
        const QByteArray diferenca = diferencaDoOuro(u"cifra.txt"_s, texto.toUtf8());
        QVERIFY2(diferenca.isEmpty(), diferenca.constData());
        QVERIFY_THROWS_EXCEPTION(Falha, cifra.gkey(2, 4, Bytes(32)));
        QVERIFY_THROWS_EXCEPTION(Falha, cifra.gkey(4, 9, Bytes(36)));
        QVERIFY_THROWS_EXCEPTION(Falha, cifra.gkey(4, 4, Bytes(15)));
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
