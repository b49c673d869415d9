#include "core/ficheiroInteiro.h"
#include "core/perfil.h"
#include "tests/apoio/discoCheio.h"
#include "tests/apoio/filho.h"
#include "tests/apoio/instalacao.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

void escrever(const QString &caminho, const QByteArray &bytes) {
    Instalacao::escreverFicheiro(caminho, bytes);
}
void permitir(const QString &caminho, int modo) {
    ::chmod(QFile::encodeName(caminho).constData(), mode_t(modo));
}
QString ler(const QString &chave) {
    return modINI::GetSetting(u"Kelvark"_s, u"S"_s, chave, u"(none)"_s);
}
bool gravar(const QString &chave, const QString &valor) {
    return modINI::SaveSetting(u"Kelvark"_s, u"S"_s, chave, valor);
}

} // namespace

class tst_definicoes : public QObject {
    Q_OBJECT
    std::optional<Instalacao> m_inst;
    QString m_ficheiro; // shared with the capture service

private Q_SLOTS:
    void init() {
        m_inst.emplace(Instalacao::Base::Nenhuma);
        m_ficheiro = m_inst->pastaINI() + u"/Kelvark.ini"_s;
    }
    void cleanup() { m_inst.reset(); }

    void pastaDasDefinicoes() {
        const QString ancora = m_inst->pastaPrograma() + u"/Kelvark.ini"_s;
        for (const auto &[texto, pasta] : {std::pair("[INI]\nPath=/a/b\n", u"/a/b/"_s),
                                           {"[INI]\nPath=/a/b/\n", u"/a/b/"_s},
                                           {"[ini]\npath=C:\\x\\\n", u"C:\\x\\"_s}}) {
            escrever(ancora, texto);
            QCOMPARE(modINI::GetINIPATH(), pasta);
        }
        QVERIFY(QFile::remove(ancora));
        QCOMPARE(modINI::GetINIPATH(), m_inst->pastaPrograma() + u'/');
    }

    void naoSaoUmPar() {
        const QString antes = modINI::GetINIPATH();
        QVERIFY(modINI::SaveSettingINIPATH(u"INI"_s, u"Path"_s, u"/outra/"_s));
        QCOMPARE(modINI::GetSettingINIPATH(u"INI"_s, u"Path"_s), antes); // Kelvark.ini decides
        QCOMPARE(modINI::GetINIPATH(), antes);
        QCOMPARE(Instalacao::lerFicheiro(m_inst->pastaPrograma() + u"/Vistrel.ini"_s), "[INI]\r\nPath=/outra/\r\n");
        QVERIFY(!QFile::exists(m_inst->pastaINI() + u"/Vistrel.ini"_s));
    }

    void leEEscreve() {
        QVERIFY(modINI::SaveSettings(u"Kelvark"_s, {{u"S"_s, u"a"_s, u"1"_s}, {u"S"_s, u"b"_s, u"2"_s}}));
        for (const QString &valor : {u"C:\\Programas\\BD=1;2"_s, u""_s, u"  x "_s, u"\x01\x7F;=[\x02"_s,
                                     u"Konfigurační soubor, ção, 日本"_s}) {
            QVERIFY(gravar(u"k"_s, valor));
            QCOMPARE(ler(u"k"_s), valor); // an empty one, too, is not the default
        }
        QCOMPARE(ler(u"a"_s) + ler(u"b"_s) + ler(u"c"_s), u"12(none)"_s);

        const QString longo(600, u'ç');
        gravar(u"k"_s, longo);
        QCOMPARE(ler(u"k"_s), longo.left(512));
        QVERIFY(Instalacao::lerFicheiro(m_ficheiro).contains(longo.toUtf8())); // only the read cuts
        QCOMPARE(modINI::GetSetting(u"Kelvark"_s, u"S"_s, u"outra"_s, longo), longo.left(512));
    }

    void pastaInexistente() {
        QVERIFY(QDir(m_inst->pastaINI()).removeRecursively());
        QVERIFY(!gravar(u"k"_s, u"v"_s));
        QVERIFY(!QFile::exists(m_inst->pastaINI()));
        try {
            modINI::Guardar(u"Kelvark"_s, {{u"S"_s, u"k"_s, u"v"_s}});
            QFAIL("told that it was stored");
        } catch (const Falha &f) {
            QVERIFY2(f.descricao().contains(m_ficheiro), qPrintable(f.descricao()));
        }
        QCOMPARE(ler(u"k"_s), u"(none)"_s);
    }

    void alteracaoDeForaVeSeLogo() {
        QCOMPARE(ler(u"k"_s), u"(none)"_s);
        for (int i = 10; i < 40; ++i) { // same length, in place, within one tick of the file's clock and after it
            escrever(m_ficheiro, "[S]\nk=" + QByteArray::number(i) + "\n");
            QCOMPARE(ler(u"k"_s), QString::number(i));
            if (i % 10 == 0)
                QTest::qSleep(60);
            QCOMPARE(ler(u"k"_s), QString::number(i));
        }
        QVERIFY(QFile::remove(m_ficheiro));
        QCOMPARE(ler(u"k"_s), u"(none)"_s);
    }

    void naoSeConseguiuEscrever_data() {
        const Tabela<int, int> caso("modoPasta", "modoFicheiro");
        caso("read-only file", 0777, 0444);
        caso("read-only folder", 0555, 0666);
        caso("unreadable file", 0777, 0222);
    }
    void naoSeConseguiuEscrever() {
        QFETCH(int, modoPasta);
        QFETCH(int, modoFicheiro);
        const QByteArray antes = "[S]\nk=1\n";
        escrever(m_ficheiro, antes);
        permitir(m_inst->ficheiro(u"."_s), 0755);
        permitir(m_ficheiro, modoFicheiro);
        permitir(m_inst->pastaINI(), modoPasta);
        Filho outro([] { return gravar(u"k"_s, u"2"_s) ? "true" : "false"; }, Filho::Quem::Ninguem);
        QCOMPARE(outro.esperar(), "false"); // and nothing is lost
        permitir(m_inst->pastaINI(), 0755);
        permitir(m_ficheiro, 0644);
        QCOMPARE(Instalacao::lerFicheiro(m_ficheiro), antes);
        QCOMPARE(QDir(m_inst->pastaINI()).entryList(QDir::Files), QStringList{u"Kelvark.ini"_s});
    }

    void discoCheio_data() {
        const Tabela<int> caso("bytes");
        caso("nothing fits", 0);
        caso("a part fits", 20);
    }
    void discoCheio() {
        QFETCH(int, bytes);
        const QByteArray antes = "[CONFIGURACOES]\r\nPWD=A2E6\r\n[S]\r\nk=1\r\n";
        escrever(m_ficheiro, antes);
        {
            const DiscoCheio cheio{rlim_t(bytes)};
            QVERIFY(!gravar(u"k"_s, u"2"_s));
            QVERIFY(!gravar(u"nova"_s, u"2"_s));
        }
        QCOMPARE(Instalacao::lerFicheiro(m_ficheiro), antes);
        QCOMPARE(QDir(m_inst->pastaINI()).entryList(QDir::Files | QDir::Hidden), QStringList{u"Kelvark.ini"_s});
        QVERIFY(gravar(u"k"_s, u"2"_s));
    }

    // What a killed program has left goes with the next file that is written there; what others hold or own stays.
    void restosDosMortos() {
        const QString pasta = m_inst->ficheiro(u"saidas"_s), destino = pasta + u"/saida"_s;
        QVERIFY(QDir().mkpath(pasta));
        escrever(destino, "velho");
        escrever(pasta + u"/.vistrel-meu.parcial"_s, "a user's");
        const auto escreverAMeio = [&destino] {
            auto *ficheiro = new FicheiroInteiro(destino);
            const bool aberto = ficheiro->abrir(true) && ficheiro->write("novo") == 4;
            while (aberto)
                ::pause();
            return QByteArray("not opened");
        };
        const auto parciaisDaPasta = [&pasta] {
            QStringList nomes = QDir(pasta).entryList({u".vistrel-*.parcial*"_s}, QDir::Files | QDir::Hidden);
            nomes.removeAll(u".vistrel-meu.parcial"_s);
            return nomes;
        };
        Filho vivo(escreverAMeio);
        QTRY_COMPARE(parciaisDaPasta().size(), 1);
        const QString doVivo = parciaisDaPasta().first();
        Filho morto(escreverAMeio);
        QTRY_COMPARE(parciaisDaPasta().size(), 2);
        QTRY_COMPARE(QFileInfo(pasta + u'/' + parciaisDaPasta().first()).size(), 4);
        morto.matar();
        QCOMPARE(parciaisDaPasta().size(), 2);
        for (const bool comNome : {true, false}) {
            FicheiroInteiro outro(destino);
            QVERIFY(outro.abrir(comNome) && outro.write("inteiro") == 7);
            QCOMPARE(Instalacao::lerFicheiro(destino), comNome ? "velho" : "inteiro");
            QVERIFY(outro.concluir());
            QCOMPARE(parciaisDaPasta(), QStringList{doVivo});
        }
        QCOMPARE(Instalacao::lerFicheiro(destino), "inteiro");
        QVERIFY(QFile::exists(pasta + u"/.vistrel-meu.parcial"_s));
    }

    void ligacaoEPermissoesFicam() {
        const QString alvo = m_inst->ficheiro(u"partilhado.ini"_s);
        const QByteArray nome = QFile::encodeName(alvo);
        escrever(alvo, "[S]\nk=1\n");
        permitir(alvo, 0664);
        const bool superutilizador = ::geteuid() == 0; // as the capture service's file
        QVERIFY(!superutilizador || ::chown(nome.constData(), 65534, 65534) == 0);
        QVERIFY(QFile::link(alvo, m_ficheiro));
        QVERIFY(gravar(u"k"_s, u"2"_s));
        QVERIFY(QFileInfo(m_ficheiro).isSymLink());
        QCOMPARE(Instalacao::lerFicheiro(alvo), "[S]\nk=2\n");
        struct stat st {};
        QCOMPARE(::stat(nome.constData(), &st), 0);
        QCOMPARE(st.st_mode & 0777, mode_t(0664));
        QVERIFY(!superutilizador || st.st_gid == 65534);
    }

    void escritorMortoDeixaOFicheiroInteiro() {
        QByteArray outras = "; kept\r\n[Outra]\r\n";
        for (int i = 0; i < 500; ++i)
            outras += "linha" + QByteArray::number(i) + "=valor\r\n";
        escrever(m_ficheiro, outras + "[S]\r\nk=0\r\n");
        int mudancas = 0;
        QString ultimo = u"0"_s;
        // On a busy machine a writer may need longer before it gets to write at all.
        for (int vez = 0; vez < 60 || (mudancas <= 5 && vez < 400); ++vez) {
            Filho escritor([] {
                for (int i = 1;; ++i)
                    gravar(u"k"_s, QString::number(i) + QString(i % 90, u'x'));
                return QByteArray();
            });
            QTest::qSleep(1 + vez * 7 % 23 + vez / 60 * 20);
            escritor.matar();
            const QByteArray bytes = Instalacao::lerFicheiro(m_ficheiro);
            QVERIFY2(bytes.startsWith(outras) && bytes.endsWith("\r\n"), bytes.right(80).constData());
            const QString agora = *Perfil(bytes).valor(u"S"_s, u"k"_s);
            mudancas += agora != ultimo ? 1 : 0;
            ultimo = agora;
        }
        QVERIFY(mudancas > 5); // the writers did get to write
    }

    void doisProcessosNoMesmoFicheiro() {
        constexpr int vezes = 150;
        const auto contar = [](const QString &chave) {
            for (int i = 1; i <= vezes; ++i)
                gravar(chave + QString::number(i), QString::number(i));
            return QByteArray("done");
        };
        Filho servico([&] { return contar(u"servico"_s); });
        contar(u"posto"_s);
        QCOMPARE(servico.esperar(), "done");
        for (int i = 1; i <= vezes; ++i)
            for (const QString &quem : {u"servico"_s, u"posto"_s})
                QCOMPARE(ler(quem + QString::number(i)), QString::number(i));
    }

    void vizinhoParadoNaoPrende() {
        const int pasta = ::open(QFile::encodeName(m_inst->pastaINI()).constData(), O_RDONLY | O_DIRECTORY);
        QCOMPARE(::flock(pasta, LOCK_EX), 0); // taken by somebody who hangs
        QVERIFY(gravar(u"k"_s, u"2"_s));
        QCOMPARE(ler(u"k"_s), u"2"_s);
        ::close(pasta);
    }
};

QTEST_GUILESS_MAIN(tst_definicoes)
#include "tst_definicoes.moc"
