#include "core/CRijndael.h"
#include "core/estado.h"
#include "core/falha.h"
#include "core/modEncriptPrincipal.h"
#include "core/modINI.h"
#include "core/modPassWord.h"
#include "tests/apoio/instalacao.h"
#include "tests/apoio/tabela.h"

#include <QFile>
#include <QRandomGenerator>
#include <QTest>

namespace {

using Bytes = std::vector<quint8>;

Bytes bytesDe(const QByteArray &hexadecimal) {
    const QByteArray b = QByteArray::fromHex(hexadecimal);
    return {b.begin(), b.end()};
}

Bytes contar(int quantos, int passo) {
    Bytes b;
    for (int i = 0; i < quantos; ++i)
        b.push_back(static_cast<quint8>(passo * i));
    return b;
}

QByteArray hexadecimal(const Bytes &b) {
    return QByteArray(reinterpret_cast<const char *>(b.data()), qsizetype(b.size())).toHex();
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
    void vectoresPublicados_data() {
        const Tabela<int, QByteArray> caso("nk", "esperado");
        caso("128", 4, "69c4e0d86a7b0430d8cdb78070b4c55a");
        caso("192", 6, "dda97ca4864cdfe06eaf70a0ec0d7191");
        caso("256", 8, "8ea2b7ca516745bfeafc49904b496089");
    }
    void vectoresPublicados() {
        QFETCH(int, nk);
        QFETCH(QByteArray, esperado);
        const Bytes claro = bytesDe("00112233445566778899aabbccddeeff");
        CRijndael cifra;
        cifra.gentables();
        cifra.gkey(4, nk, bytesDe("000102030405060708090a0b0c0d0e0f101112131415161718191a1b1c1d1e1f"));
        Bytes bloco = claro;
        cifra.Encrypt(bloco);
        QCOMPARE(bloco, bytesDe(esperado));
        cifra.Decrypt(bloco);
        QCOMPARE(bloco, claro);
    }

    // Twenty rounds with changing keys, each way; the values come from an implementation without tables.
    void outrosTamanhos_data() {
        const Tabela<int, int, QByteArray, QByteArray> caso("nb", "nk", "cifrado", "decifrado");
        caso("own sizes", 3, 3, "d19b430e2cb3bff8c41e9bfb", "d14d40839a231b93086320b8");
        caso("4x8", 4, 8, "795e1e239b7214b4081c7fa1857a7746", "08bdae6e1fdab6ec34c275c6381e0ca9");
        caso("6x4", 6, 4, "68dee7db33f059c4261ff33a32ed6dedfc6d09cea27254ff",
             "77bb1be15a143d4cf17452c63d591fcba3da3cfeeeddc740");
        caso("8x3: most round constants", 8, 3, "300800f74e7533eafb97774c9b6c7e4b049070e499e6afe7859b39571c2f3490",
             "dc9141073883e247c7b7b026dcd1e607ae427e6b5e6f8f0fc30e350c2875412b");
        caso("8x8", 8, 8, "4ac5f3dcbcc8a6baf5518eadaee9ede3b605cfa86f4a457afc43318b0baf6ab0",
             "01570ec6516489d00bb0cd9c7595ac9c487aa748d34dfc20284eef8747b99a83");
    }
    void outrosTamanhos() {
        QFETCH(int, nb);
        QFETCH(int, nk);
        Bytes chave = contar(4 * nk, 17);
        Bytes cifrado = contar(4 * nb, 1);
        Bytes decifrado = cifrado; // any block deciphers, also one that was never enciphered
        CRijndael cifra;
        cifra.gentables();
        for (int volta = 0; volta < 20; ++volta) {
            cifra.gkey(nb, nk, chave);
            const Bytes antes = cifrado;
            cifra.Encrypt(cifrado);
            Bytes devolta = cifrado;
            cifra.Decrypt(devolta);
            QCOMPARE(devolta, antes);
            cifra.Decrypt(decifrado);
            for (size_t i = 0; i < chave.size(); ++i)
                chave[i] ^= cifrado[i % cifrado.size()];
        }
        QTEST(hexadecimal(cifrado), "cifrado");
        QTEST(hexadecimal(decifrado), "decifrado");
    }

    void tamanhosRecusados() {
        CRijndael cifra;
        cifra.gentables();
        QVERIFY_THROWS_EXCEPTION(Falha, cifra.gkey(2, 4, Bytes(32)));
        QVERIFY_THROWS_EXCEPTION(Falha, cifra.gkey(4, 9, Bytes(36)));
        QVERIFY_THROWS_EXCEPTION(Falha, cifra.gkey(4, 4, Bytes(15)));
    }

    // Framing, text form, pass phrase and block independence, as installations have them stored.
    void formaGuardada_data() {
        const Tabela<QString, QString> caso("texto", "guardado");
        caso("empty", {}, u"C68C3DFEE3BBBF663BB6AEAA"_s);
        caso("one block exactly", u"abcd"_s, u"1DCB19698B8ADC254333BFD3"_s);
        caso("ten characters", u"0123456789"_s, u"87FACB1763AECEDA5AF0922899ABCC27FFC63B3A665B1DAE"_s);
        caso("eleven characters", u"0123456789A"_s,
             u"986CAC7534E11AD4F50AF18999ABCC27FFC63B3A665B1DAED6AF3D8E52F5C85C1BACD3E7"_s);
        caso("beyond Latin", u"čçß€😀"_s, u"147E751FDC2D7AC77CC958B569A487464296E02B9D3496B3"_s);
    }
    void formaGuardada() {
        QFETCH(QString, texto);
        QFETCH(QString, guardado);
        QCOMPARE(modEncriptPrincipal::EncriptarString(texto), guardado);
        QCOMPARE(modEncriptPrincipal::DesencriptarString(guardado), texto);
    }

    void textosDeTodosOsComprimentos() {
        QString texto;
        for (int n = 0; n < 200; ++n) {
            QCOMPARE(modEncriptPrincipal::DesencriptarString(modEncriptPrincipal::EncriptarString(texto)), texto);
            texto += QChar(0x41 + 37 * n);
        }
    }

    void valoresDanificados_data() {
        QTest::addColumn<QString>("valor");
        const QString bom = modEncriptPrincipal::EncriptarString(u"Segredo12345"_s);
        QTest::newRow("empty") << QString();
        QTest::newRow("one digit") << u"A"_s;
        QTest::newRow("odd digits") << bom.chopped(1);
        QTest::newRow("odd, too long") << bom + u'0';
        QTest::newRow("part of a block") << bom.chopped(2);
        QTest::newRow("last block lost") << bom.chopped(24);
        QTest::newRow("no digits") << u"Segredo12345"_s;
        QTest::newRow("digits of another script") << QString(24, QChar(0x0661));
        QTest::newRow("blank inside") << QString(bom).replace(10, 1, u" "_s);
        QTest::newRow("half a block more") << bom + bom.left(12);
        QTest::newRow("very long") << QString(2'000'002, u'7');

        // A length field that asks for far more than is there, or for one byte more.
        CRijndael cifra;
        const QByteArray chave = QByteArray("k\0e\0y\0Q\0"
                                            "7\0",
                                            10);
        cifra.EncryptData({}, chave);
        for (const char *claro : {"ffffffff4100420043004400", "000000804100420043004400", "090000004100420043004400"}) {
            Bytes bloco = bytesDe(claro);
            cifra.Encrypt(bloco);
            QTest::newRow(claro) << QString::fromLatin1(hexadecimal(bloco).toUpper());
        }
    }
    void valoresDanificados() {
        QFETCH(QString, valor);
        const Instalacao inst(Instalacao::Base::Nenhuma);
        QCOMPARE(modEncriptPrincipal::DesencriptarString(valor), QString());
        guardarPWD(valor);
        for (const QString &tentativa : {u"Segredo12345"_s, u"Segredo"_s, u"ABCD"_s, u"Vistrel"_s, u" "_s, QString()}) {
            QVERIFY(!modPassWord::PassWordCorrecta(tentativa));
            if (!tentativa.trimmed().isEmpty())
                QCOMPARE(modPassWord::AlterarPassWord(tentativa, u"n"_s, u"n"_s),
                         modPassWord::Alteracao::PassWordInvalida);
        }
    }

    void danosAoAcasoNuncaAbrem() {
        const QString palavra = u"Segredo12345"_s;
        const QString bom = modEncriptPrincipal::EncriptarString(palavra);
        QRandomGenerator acaso(7);
        for (int i = 0; i < 3000; ++i) {
            QString mau = bom;
            const auto onde = acaso.bounded(qint64(mau.size()));
            mau[onde] = QChar(mau[onde] == u'5' ? u'A' : u'5');
            if (acaso.bounded(2))
                mau.truncate(acaso.bounded(qint64(mau.size())));
            QVERIFY2(modEncriptPrincipal::DesencriptarString(mau) != palavra, qPrintable(mau));
        }
        // Lower-case digits are the same value: a person who edits the file may write them so.
        QCOMPARE(modEncriptPrincipal::DesencriptarString(bom.toLower()), palavra);
    }

    void palavraDeFabrica() {
        const Instalacao inst(Instalacao::Base::Nenhuma);
        QCOMPARE(modPassWord::pwdPorOmissao().size(), 48);
        QCOMPARE(modEncriptPrincipal::DesencriptarString(modPassWord::pwdPorOmissao()), u"Vistrel"_s);
        QVERIFY(modPassWord::PassWordCorrecta(u"Vistrel"_s));
        QCOMPARE(lerPWD(), u"(none)"_s); // asking stores nothing
    }

    void comparacao_data() {
        const Tabela<QString, QString, bool> caso("guardada", "digitada", "certa");
        caso("right", u"Abc ç"_s, u"Abc ç"_s, true);
        caso("case", u"Abc"_s, u"abc"_s, false);
        caso("begun", u"Abc"_s, u"Ab"_s, false);
        caso("gone past", u"Abc"_s, u"Abcd"_s, false);
        caso("blank behind", u"Abc"_s, u"Abc "_s, false);
        caso("its own blank behind", u"Abc "_s, u"Abc "_s, true);
        caso("stored blanks never open", u"   "_s, u"   "_s, false);
        caso("stored empty never opens", {}, {}, false);
    }
    void comparacao() {
        QFETCH(QString, guardada);
        QFETCH(QString, digitada);
        const Instalacao inst(Instalacao::Base::Nenhuma);
        guardarPWD(modEncriptPrincipal::EncriptarString(guardada));
        QTEST(modPassWord::PassWordCorrecta(digitada), "certa");
    }

    void alteracao_data() {
        using modPassWord::Alteracao;
        const Tabela<QString, QString, QString, Alteracao> caso("actual", "nova", "confirmacao", "esperado");
        caso("changed", u"Vistrel"_s, u"Nova ç"_s, u"Nova ç"_s, Alteracao::Alterada);
        caso("no current", {}, u"n"_s, u"n"_s, Alteracao::Incompleta);
        caso("no new", u"Vistrel"_s, {}, u"n"_s, Alteracao::Incompleta);
        caso("no confirmation", u"Vistrel"_s, u"n"_s, {}, Alteracao::Incompleta);
        caso("new of blanks", u"Vistrel"_s, u"  "_s, u"  "_s, Alteracao::Incompleta);
        caso("wrong current, before the confirmation", u"vistrel"_s, u"n"_s, u"m"_s, Alteracao::PassWordInvalida);
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
        QVERIFY(!Instalacao::lerFicheiro(inst.pastaINI() + u"/Vistrel.ini"_s).contains("Nova"));
    }

    void alteracaoQueNaoSeGuarda() {
        const Instalacao inst(Instalacao::Base::Nenhuma);
        QVERIFY(QFile::rename(inst.pastaINI(), inst.ficheiro(u"longe"_s)));
        QVERIFY_THROWS_EXCEPTION(Falha, modPassWord::AlterarPassWord(u"Vistrel"_s, u"nova"_s, u"nova"_s));
        QVERIFY(modPassWord::PassWordCorrecta(u"Vistrel"_s));
    }

    // The longest password must come back whole through the bounded read of the settings.
    void limiteDoComprimento() {
        const Instalacao inst(Instalacao::Base::Nenhuma);
        const QString maior(modPassWord::maximoDeCaracteres, u'ç');
        QVERIFY_THROWS_EXCEPTION(Falha, modPassWord::AlterarPassWord(u"Vistrel"_s, maior + u'ç', maior + u'ç'));
        QVERIFY(modPassWord::PassWordCorrecta(u"Vistrel"_s));
        QCOMPARE(modPassWord::AlterarPassWord(u"Vistrel"_s, maior, maior), modPassWord::Alteracao::Alterada);
        QVERIFY(modPassWord::PassWordCorrecta(maior));
    }
};

QTEST_GUILESS_MAIN(tst_cifra)
#include "tst_cifra.moc"
