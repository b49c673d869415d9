#include "core/CRijndael.h"
#include "core/estado.h"
#include "core/falha.h"
#include "core/modEncriptPrincipal.h"
#include "core/modINI.h"
#include "core/modPassWord.h"
#include "tests/apoio/instalacao.h"

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
    void vectoresPublicados_data();
    void vectoresPublicados();
    void igualAImplementacaoLenta_data();
    void igualAImplementacaoLenta();
    void tamanhosRecusados();
    void formaGuardada_data();
    void formaGuardada();
    void textosDeTodosOsComprimentos();
    void valoresDanificados_data();
    void valoresDanificados();
    void danosAoAcasoNuncaAbrem();
    void palavraDeFabrica();
    void comparacao_data();
    void comparacao();
    void alteracao_data();
    void alteracao();
    void alteracaoQueNaoSeGuarda();
    void limiteDoComprimento();
};

void tst_cifra::vectoresPublicados_data() {
    QTest::addColumn<int>("nk");
    QTest::addColumn<QByteArray>("esperado");
    QTest::newRow("128") << 4 << QByteArray("69c4e0d86a7b0430d8cdb78070b4c55a");
    QTest::newRow("192") << 6 << QByteArray("dda97ca4864cdfe06eaf70a0ec0d7191");
    QTest::newRow("256") << 8 << QByteArray("8ea2b7ca516745bfeafc49904b496089");
}

void tst_cifra::vectoresPublicados() {
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

void tst_cifra::igualAImplementacaoLenta_data() {
    QTest::addColumn<int>("nb");
    QTest::addColumn<int>("nk");
    QTest::addColumn<int>("blocos");
    QTest::newRow("own sizes") << 3 << 3 << 60;
    QTest::newRow("4x8") << 4 << 8 << 4;
    QTest::newRow("6x4") << 6 << 4 << 4;
    QTest::newRow("8x3: most round constants") << 8 << 3 << 4;
    QTest::newRow("8x8") << 8 << 8 << 4;
}

void tst_cifra::igualAImplementacaoLenta() {
    QFETCH(int, nb);
    QFETCH(int, nk);
    QFETCH(int, blocos);
    QRandomGenerator acaso(20240315);
    CRijndael cifra;
    cifra.gentables();
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
        cifra.Encrypt(bloco);
        QCOMPARE(bloco, claro);
    }
}

void tst_cifra::tamanhosRecusados() {
    CRijndael cifra;
    cifra.gentables();
    QVERIFY_THROWS_EXCEPTION(Falha, cifra.gkey(2, 4, Bytes(32)));
    QVERIFY_THROWS_EXCEPTION(Falha, cifra.gkey(4, 9, Bytes(36)));
    QVERIFY_THROWS_EXCEPTION(Falha, cifra.gkey(4, 4, Bytes(15)));
}

// Framing, text form, pass phrase and block independence, against the slow cipher.
void tst_cifra::formaGuardada_data() {
    QTest::addColumn<QString>("texto");
    QTest::addColumn<int>("digitos");
    QTest::newRow("empty") << QString() << 24;
    QTest::newRow("one block exactly") << u"abcd"_s << 24;
    QTest::newRow("ten characters") << u"0123456789"_s << 48;
    QTest::newRow("eleven characters") << u"0123456789A"_s << 72;
    QTest::newRow("beyond Latin") << u"čçß€"_s + QChar(0xD83D) + QChar(0xDE00) << 48;
}

void tst_cifra::formaGuardada() {
    QFETCH(QString, texto);
    QFETCH(int, digitos);
    Bytes chave;
    for (const char c : QByteArray("keyQ7"))
        chave.insert(chave.end(), {static_cast<quint8>(c), 0});
    chave.resize(12);
    Bytes dados(4);
    dados[0] = static_cast<quint8>(2 * texto.size());
    for (const QChar c : texto)
        dados.insert(dados.end(), {c.cell(), c.row()});
    dados.resize((dados.size() + 11) / 12 * 12);
    const lento::Cifra outra(3, 3, chave);
    QString esperado;
    for (size_t i = 0; i < dados.size(); i += 12)
        for (const quint8 b : outra.cifrar(Bytes(dados.begin() + i, dados.begin() + i + 12)))
            esperado += u"%1"_s.arg(b, 2, 16, QChar(u'0')).toUpper();
    QCOMPARE(esperado.size(), digitos);
    QCOMPARE(modEncriptPrincipal::EncriptarString(texto), esperado);
    QCOMPARE(modEncriptPrincipal::DesencriptarString(esperado), texto);
}

void tst_cifra::textosDeTodosOsComprimentos() {
    QString texto;
    for (int n = 0; n < 200; ++n) {
        QCOMPARE(modEncriptPrincipal::DesencriptarString(modEncriptPrincipal::EncriptarString(texto)), texto);
        texto += QChar(0x41 + 37 * n);
    }
}

void tst_cifra::valoresDanificados_data() {
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
        const QByteArray cifrado(reinterpret_cast<const char *>(bloco.data()), qsizetype(bloco.size()));
        QTest::newRow(claro) << QString::fromLatin1(cifrado.toHex().toUpper());
    }
}

void tst_cifra::valoresDanificados() {
    QFETCH(QString, valor);
    const Instalacao inst(Instalacao::Base::Nenhuma);
    QCOMPARE(modEncriptPrincipal::DesencriptarString(valor), QString());
    guardarPWD(valor);
    for (const QString &tentativa : {u"Segredo12345"_s, u"Segredo"_s, u"ABCD"_s, u"Vistrel"_s, u" "_s, QString()}) {
        QVERIFY(!modPassWord::PassWordCorrecta(tentativa));
        if (!tentativa.trimmed().isEmpty())
            QCOMPARE(modPassWord::AlterarPassWord(tentativa, u"n"_s, u"n"_s), modPassWord::Alteracao::PassWordInvalida);
    }
}

void tst_cifra::danosAoAcasoNuncaAbrem() {
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

void tst_cifra::palavraDeFabrica() {
    const Instalacao inst(Instalacao::Base::Nenhuma);
    QCOMPARE(modPassWord::pwdPorOmissao().size(), 48);
    QCOMPARE(modEncriptPrincipal::DesencriptarString(modPassWord::pwdPorOmissao()), u"Vistrel"_s);
    QVERIFY(modPassWord::PassWordCorrecta(u"Vistrel"_s));
    QCOMPARE(lerPWD(), u"(none)"_s); // asking stores nothing
}

void tst_cifra::comparacao_data() {
    QTest::addColumn<QString>("guardada");
    QTest::addColumn<QString>("digitada");
    QTest::addColumn<bool>("certa");
    QTest::newRow("right") << u"Abc ç"_s << u"Abc ç"_s << true;
    QTest::newRow("case") << u"Abc"_s << u"abc"_s << false;
    QTest::newRow("begun") << u"Abc"_s << u"Ab"_s << false;
    QTest::newRow("gone past") << u"Abc"_s << u"Abcd"_s << false;
    QTest::newRow("blank behind") << u"Abc"_s << u"Abc "_s << false;
    QTest::newRow("its own blank behind") << u"Abc "_s << u"Abc "_s << true;
    QTest::newRow("stored blanks never open") << u"   "_s << u"   "_s << false;
    QTest::newRow("stored empty never opens") << QString() << QString() << false;
}

void tst_cifra::comparacao() {
    QFETCH(QString, guardada);
    QFETCH(QString, digitada);
    const Instalacao inst(Instalacao::Base::Nenhuma);
    guardarPWD(modEncriptPrincipal::EncriptarString(guardada));
    QTEST(modPassWord::PassWordCorrecta(digitada), "certa");
}

void tst_cifra::alteracao_data() {
    using modPassWord::Alteracao;
    QTest::addColumn<QString>("actual");
    QTest::addColumn<QString>("nova");
    QTest::addColumn<QString>("confirmacao");
    QTest::addColumn<Alteracao>("esperado");
    QTest::newRow("changed") << u"Vistrel"_s << u"Nova ç"_s << u"Nova ç"_s << Alteracao::Alterada;
    QTest::newRow("no current") << QString() << u"n"_s << u"n"_s << Alteracao::Incompleta;
    QTest::newRow("no new") << u"Vistrel"_s << QString() << u"n"_s << Alteracao::Incompleta;
    QTest::newRow("no confirmation") << u"Vistrel"_s << u"n"_s << QString() << Alteracao::Incompleta;
    QTest::newRow("new of blanks") << u"Vistrel"_s << u"  "_s << u"  "_s << Alteracao::Incompleta;
    QTest::newRow("wrong current, before the confirmation")
        << u"vistrel"_s << u"n"_s << u"m"_s << Alteracao::PassWordInvalida;
    QTest::newRow("wrong confirmation") << u"Vistrel"_s << u"nova"_s << u"Nova"_s << Alteracao::ConfirmacaoIncorrecta;
}

void tst_cifra::alteracao() {
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

void tst_cifra::alteracaoQueNaoSeGuarda() {
    const Instalacao inst(Instalacao::Base::Nenhuma);
    QVERIFY(QFile::rename(inst.pastaINI(), inst.ficheiro(u"longe"_s)));
    QVERIFY_THROWS_EXCEPTION(Falha, modPassWord::AlterarPassWord(u"Vistrel"_s, u"nova"_s, u"nova"_s));
    QVERIFY(modPassWord::PassWordCorrecta(u"Vistrel"_s));
}

// The longest password must come back whole through the bounded read of the settings.
void tst_cifra::limiteDoComprimento() {
    const Instalacao inst(Instalacao::Base::Nenhuma);
    const QString maior(modPassWord::maximoDeCaracteres, u'ç');
    QVERIFY_THROWS_EXCEPTION(Falha, modPassWord::AlterarPassWord(u"Vistrel"_s, maior + u'ç', maior + u'ç'));
    QVERIFY(modPassWord::PassWordCorrecta(u"Vistrel"_s));
    QCOMPARE(modPassWord::AlterarPassWord(u"Vistrel"_s, maior, maior), modPassWord::Alteracao::Alterada);
    QVERIFY(modPassWord::PassWordCorrecta(maior));
}

QTEST_GUILESS_MAIN(tst_cifra)
#include "tst_cifra.moc"
