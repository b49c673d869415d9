#include "core/estado.h"
#include "core/modINI.h"
#include "core/perfil.h"
#include "tests/apoio/filho.h"
#include "tests/apoio/instalacao.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

class tst_definicoes : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void pastaDasDefinicoes_data();
    void pastaDasDefinicoes();
    void naoSaoUmPar();
    void leEEscreve_data();
    void leEEscreve();
    void cortaAos512();
    void pastaInexistente();
    void alteracaoDeForaVeSeLogo();
    void naoSeConseguiuEscrever_data();
    void naoSeConseguiuEscrever();
    void ligacaoEPermissoesFicam();
    void escritorMortoDeixaOFicheiroInteiro();
    void doisProcessosNoMesmoFicheiro();
    void vizinhoParadoNaoPrende();
};

namespace {
void escrever(const QString &caminho, const QByteArray &bytes) {
    Instalacao::escreverFicheiro(caminho, bytes);
}
QString ler(const QString &chave) {
    return modINI::GetSetting(u"Kelvark"_s, u"S"_s, chave, u"(none)"_s);
}
} // namespace

void tst_definicoes::pastaDasDefinicoes_data() {
    QTest::addColumn<QByteArray>("ancora"); // Kelvark.ini beside the program; null: none
    QTest::addColumn<QString>("pasta");     // empty: the program's folder
    QTest::newRow("none") << QByteArray() << QString();
    QTest::newRow("no key") << QByteArray("[INI]\nx=1\n") << QString();
    QTest::newRow("empty") << QByteArray("[INI]\nPath=\n") << QString();
    QTest::newRow("without separator") << QByteArray("[INI]\nPath=/a/b\n") << u"/a/b/"_s;
    QTest::newRow("with one") << QByteArray("[INI]\nPath=/a/b/\n") << u"/a/b/"_s;
    QTest::newRow("with a backslash") << QByteArray("[ini]\npath=C:\\x\\\n") << u"C:\\x\\"_s;
}

void tst_definicoes::pastaDasDefinicoes() {
    QFETCH(QByteArray, ancora);
    QFETCH(QString, pasta);
    Instalacao inst(Instalacao::Base::Nenhuma);
    const QString ficheiro = inst.pastaPrograma() + u"/Kelvark.ini"_s;
    if (ancora.isNull())
        QVERIFY(QFile::remove(ficheiro));
    else
        escrever(ficheiro, ancora);
    QCOMPARE(modINI::GetINIPATH(), pasta.isEmpty() ? inst.pastaPrograma() + u'/' : pasta);
}

void tst_definicoes::naoSaoUmPar() {
    Instalacao inst(Instalacao::Base::Nenhuma);
    const QString antes = modINI::GetINIPATH();
    QVERIFY(modINI::SaveSettingINIPATH(u"INI"_s, u"Path"_s, u"/outra/"_s));
    QCOMPARE(modINI::GetSettingINIPATH(u"INI"_s, u"Path"_s), antes); // Kelvark.ini decides
    QCOMPARE(modINI::GetINIPATH(), antes);
    QCOMPARE(Instalacao::lerFicheiro(inst.pastaPrograma() + u"/Vistrel.ini"_s), "[INI]\r\nPath=/outra/\r\n");
    QVERIFY(!QFile::exists(inst.pastaINI() + u"/Vistrel.ini"_s));
}

void tst_definicoes::leEEscreve_data() {
    QTest::addColumn<QString>("valor");
    QTest::newRow("text") << u"C:\\Programas\\BD=1;2"_s;
    QTest::newRow("empty, not the default") << QString();
    QTest::newRow("outer blanks") << u"  x "_s;
    QTest::newRow("blanks only") << u"   "_s;
    QTest::newRow("quotes") << u"\"q\""_s;
    QTest::newRow("control characters of a cipher") << u"\x01\x7F;=[\x02"_s;
    QTest::newRow("any language") << u"Konfigurační soubor, ção, 日本"_s;
}

void tst_definicoes::leEEscreve() {
    QFETCH(QString, valor);
    Instalacao inst(Instalacao::Base::Nenhuma);
    QVERIFY(modINI::SaveSettings(u"Kelvark"_s,
                                 {{u"S"_s, u"a"_s, u"1"_s}, {u"S"_s, u"k"_s, valor}, {u"S"_s, u"b"_s, u"2"_s}}));
    QCOMPARE(ler(u"k"_s), valor);
    QVERIFY(modINI::SaveSetting(u"Kelvark"_s, u"S"_s, u"k"_s, u"x"_s));
    QVERIFY(modINI::SaveSetting(u"Kelvark"_s, u"S"_s, u"k"_s, valor));
    QCOMPARE(ler(u"k"_s), valor);
    QCOMPARE(ler(u"a"_s) + ler(u"b"_s) + ler(u"c"_s), u"12(none)"_s);
}

void tst_definicoes::cortaAos512() {
    Instalacao inst(Instalacao::Base::Nenhuma);
    const QString longo(600, u'ç');
    modINI::SaveSetting(u"Kelvark"_s, u"S"_s, u"k"_s, longo);
    QCOMPARE(ler(u"k"_s), longo.left(512));
    QVERIFY(Instalacao::lerFicheiro(inst.pastaINI() + u"/Kelvark.ini"_s).contains(longo.toUtf8())); // only the read
    QCOMPARE(modINI::GetSetting(u"Kelvark"_s, u"S"_s, u"outra"_s, longo), longo.left(512));
}

void tst_definicoes::pastaInexistente() {
    Instalacao inst(Instalacao::Base::Nenhuma);
    QVERIFY(QDir(inst.pastaINI()).removeRecursively());
    QVERIFY(modINI::SaveSetting(u"Kelvark"_s, u"S"_s, u"k"_s, u"v"_s));
    QVERIFY(!QFile::exists(inst.pastaINI()));
    QCOMPARE(ler(u"k"_s), u"(none)"_s);
}

void tst_definicoes::alteracaoDeForaVeSeLogo() {
    Instalacao inst(Instalacao::Base::Nenhuma);
    const QString ficheiro = inst.pastaINI() + u"/Kelvark.ini"_s;
    QCOMPARE(ler(u"k"_s), u"(none)"_s);
    for (int i = 0; i < 30; ++i) { // same length, in place, within one tick of the file's clock and after it
        escrever(ficheiro, "[S]\nk=" + QByteArray::number(10 + i) + "\n");
        QCOMPARE(ler(u"k"_s), QString::number(10 + i));
        if (i % 10 == 0)
            QTest::qSleep(60);
        QCOMPARE(ler(u"k"_s), QString::number(10 + i));
    }
    QVERIFY(QFile::remove(ficheiro));
    QCOMPARE(ler(u"k"_s), u"(none)"_s);
}

void tst_definicoes::naoSeConseguiuEscrever_data() {
    QTest::addColumn<int>("modoPasta");
    QTest::addColumn<int>("modoFicheiro");
    QTest::newRow("read-only file") << 0777 << 0444;
    QTest::newRow("read-only folder") << 0555 << 0666;
    QTest::newRow("unreadable file") << 0777 << 0222;
}

void tst_definicoes::naoSeConseguiuEscrever() {
    QFETCH(int, modoPasta);
    QFETCH(int, modoFicheiro);
    Instalacao inst(Instalacao::Base::Nenhuma);
    const QString ficheiro = inst.pastaINI() + u"/Kelvark.ini"_s;
    const QByteArray antes = "[S]\nk=1\n";
    escrever(ficheiro, antes);
    ::chmod(QFile::encodeName(inst.ficheiro(u"."_s)).constData(), 0755);
    ::chmod(QFile::encodeName(ficheiro).constData(), mode_t(modoFicheiro));
    ::chmod(QFile::encodeName(inst.pastaINI()).constData(), mode_t(modoPasta));
    Filho outro([] { return modINI::SaveSetting(u"Kelvark"_s, u"S"_s, u"k"_s, u"2"_s) ? "true" : "false"; },
                Filho::Quem::Ninguem);
    QCOMPARE(outro.esperar(), "true"); // silently, and nothing is lost
    ::chmod(QFile::encodeName(inst.pastaINI()).constData(), 0755);
    ::chmod(QFile::encodeName(ficheiro).constData(), 0644);
    QCOMPARE(Instalacao::lerFicheiro(ficheiro), antes);
    QCOMPARE(QDir(inst.pastaINI()).entryList(QDir::Files), QStringList{u"Kelvark.ini"_s});
}

void tst_definicoes::ligacaoEPermissoesFicam() {
    Instalacao inst(Instalacao::Base::Nenhuma);
    const QString alvo = inst.ficheiro(u"partilhado.ini"_s);
    const QString nome = inst.pastaINI() + u"/Kelvark.ini"_s;
    escrever(alvo, "[S]\nk=1\n");
    ::chmod(QFile::encodeName(alvo).constData(), 0664);
    if (::geteuid() == 0) // as the capture service's file
        QCOMPARE(::chown(QFile::encodeName(alvo).constData(), 65534, 65534), 0);
    QVERIFY(QFile::link(alvo, nome));
    QVERIFY(modINI::SaveSetting(u"Kelvark"_s, u"S"_s, u"k"_s, u"2"_s));
    QCOMPARE(ler(u"k"_s), u"2"_s);
    QVERIFY(QFileInfo(nome).isSymLink());
    QCOMPARE(Instalacao::lerFicheiro(alvo), "[S]\nk=2\n");
    struct stat st {};
    QCOMPARE(::stat(QFile::encodeName(alvo).constData(), &st), 0);
    QCOMPARE(st.st_mode & 0777, mode_t(0664));
    if (::geteuid() == 0)
        QCOMPARE(st.st_gid, gid_t(65534));
}

void tst_definicoes::escritorMortoDeixaOFicheiroInteiro() {
    Instalacao inst(Instalacao::Base::Nenhuma);
    const QString ficheiro = inst.pastaINI() + u"/Kelvark.ini"_s;
    QByteArray outras = "; kept\r\n[Outra]\r\n";
    for (int i = 0; i < 500; ++i)
        outras += "linha" + QByteArray::number(i) + "=valor\r\n";
    escrever(ficheiro, outras + "[S]\r\nk=0\r\n");
    int mudancas = 0;
    QString ultimo = u"0"_s;
    // On a busy machine a writer may need longer before it gets to write at all.
    for (int vez = 0; vez < 60 || (mudancas <= 5 && vez < 400); ++vez) {
        Filho escritor([] {
            for (int i = 1;; ++i)
                modINI::SaveSetting(u"Kelvark"_s, u"S"_s, u"k"_s, QString::number(i) + QString(i % 90, u'x'));
            return QByteArray();
        });
        QTest::qSleep(1 + vez * 7 % 23 + vez / 60 * 20);
        escritor.matar();
        const QByteArray bytes = Instalacao::lerFicheiro(ficheiro);
        QVERIFY2(bytes.startsWith(outras) && bytes.endsWith("\r\n"), bytes.right(80).constData());
        const QString agora = *Perfil(bytes).valor(u"S"_s, u"k"_s);
        mudancas += agora != ultimo ? 1 : 0;
        ultimo = agora;
    }
    QVERIFY(mudancas > 5); // the writers did get to write
}

void tst_definicoes::doisProcessosNoMesmoFicheiro() {
    Instalacao inst(Instalacao::Base::Nenhuma);
    constexpr int vezes = 150;
    const auto contar = [](const QString &chave) {
        for (int i = 1; i <= vezes; ++i)
            modINI::SaveSetting(u"Kelvark"_s, u"S"_s, chave + QString::number(i), QString::number(i));
        return QByteArray("done");
    };
    Filho servico([&] { return contar(u"servico"_s); });
    contar(u"posto"_s);
    QCOMPARE(servico.esperar(), "done");
    for (int i = 1; i <= vezes; ++i)
        for (const QString &quem : {u"servico"_s, u"posto"_s})
            QCOMPARE(ler(quem + QString::number(i)), QString::number(i));
}

void tst_definicoes::vizinhoParadoNaoPrende() {
    Instalacao inst(Instalacao::Base::Nenhuma);
    const QString ficheiro = inst.pastaINI() + u"/Kelvark.ini"_s;
    escrever(ficheiro, "[S]\nk=1\n");
    const int pasta = ::open(QFile::encodeName(inst.pastaINI()).constData(), O_RDONLY | O_DIRECTORY);
    QCOMPARE(::flock(pasta, LOCK_EX), 0); // taken by somebody who hangs
    QElapsedTimer relogio;
    relogio.start();
    QVERIFY(modINI::SaveSetting(u"Kelvark"_s, u"S"_s, u"k"_s, u"2"_s));
    QCOMPARE(ler(u"k"_s), u"2"_s);
    QVERIFY(relogio.elapsed() < 60000);
    ::close(pasta);
}

QTEST_GUILESS_MAIN(tst_definicoes)
#include "tst_definicoes.moc"
