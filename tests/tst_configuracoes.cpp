#include "core/modPassWord.h"
#include "manutencao/linguas.h"
#include "platform/chart/TChart.h"
#include "tests/manutencaoDeTeste.h"

using namespace utilizador;

namespace {

const QString fabrica = u"Vistrel"_s;

QString texto(QDialog *dialogo, const QString &campo) {
    return controlo<QLineEdit>(dialogo, campo)->text();
}

// Every file of the installation that holds the text.
QStringList ficheirosCom(const QString &pasta, const QByteArray &procurado) {
    QStringList achados;
    QDirIterator it(pasta, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext())
        if (const QString nome = it.next(); Instalacao::lerFicheiro(nome).contains(procurado))
            achados.append(nome);
    return achados;
}

} // namespace

// Password and configuration, worked as a user does.
class tst_configuracoes : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void palavraPasse_data() {
        const Tabela<int, QString, bool, bool, QString> caso("objectivo", "digitada", "fecha", "confirmado", "abre");
        caso("a mission", 1, fabrica, true, true, {});
        caso("sensors", 2, fabrica, true, false, u"frmSensoresEdit"_s);
        caso("all missions", 3, fabrica, true, true, {});
        caso("other letters' case", 1, u"vistrel"_s, false, false, {});
        caso("blanks", 1, u"   "_s, false, false, {});
        caso("more than the password", 2, u" Vistrel"_s, false, false, {});
    }
    void palavraPasse() {
        QFETCH(const int, objectivo);
        QFETCH(const QString, digitada);
        QFETCH(const bool, fecha);
        QFETCH(const bool, confirmado);
        QFETCH(const QString, abre);
        const Programa programa;
        estado().ObjectivoPassWord = qint16(objectivo);
        estado().EliminarConfirmado = true; // left over from another time
        QString aberto;
        QTimer atento;
        connect(&atento, &QTimer::timeout, qApp, [&] {
            if (QWidget *outro = abre.isEmpty() ? nullptr : registoForms().form(abre)) {
                aberto = abre;
                outro->close();
            }
        });
        atento.start(1);
        bool aindaAberto = false;
        comDialogo(u"frmPassWord"_s, [&](QDialog *dialogo) {
            const QPointer<QDialog> vigiado = dialogo;
            escrever(dialogo, u"txtPassWord"_s, digitada);
            aindaAberto = vigiado && vigiado->isVisible();
            if (aindaAberto)
                tecla(controlo<QLineEdit>(dialogo, u"txtPassWord"_s), Qt::Key_Escape);
        });
        QCOMPARE(aindaAberto, !fecha);
        QCOMPARE(estado().EliminarConfirmado, confirmado);
        QCOMPARE(aberto, abre);
    }

    // The first key says that no password can be right, and nothing is left to type into.
    void definicoesDanificadas() {
        Programa programa;
        Instalacao::escreverFicheiro(programa.instalacao.pastaINI() + u"/Vistrel.ini"_s, "");
        estado().ObjectivoPassWord = 1;
        programa.instalacao.erros.esperar(u"Vistrel.ini\" foi danificado"_s);
        bool fechado = false;
        comDialogo(u"frmPassWord"_s, [&](QDialog *dialogo) {
            const QPointer<QDialog> vigiado = dialogo;
            tecla(controlo<QLineEdit>(dialogo, u"txtPassWord"_s), Qt::Key_V);
            fechado = !vigiado || !vigiado->isVisible();
        });
        QVERIFY(fechado && !estado().EliminarConfirmado);
    }

    void palavraPasseNaoFica() {
        Programa programa;
        const QString segredo = u"Segredo-71"_s;
        estado().ObjectivoPassWord = 1;
        comDialogo(u"frmPassWord"_s, [&](QDialog *dialogo) {
            escrever(dialogo, u"txtPassWord"_s, segredo);
            auto *campo = controlo<QLineEdit>(dialogo, u"txtPassWord"_s);
            for (const QString &visivel : {campo->displayText(), campo->accessibleName(), campo->toolTip(),
                                           dialogo->accessibleName(), dialogo->windowTitle()})
                QVERIFY(!visivel.contains(segredo));
            QCOMPARE(campo->echoMode(), QLineEdit::Password);
        });
        QVERIFY(!estado().EliminarConfirmado);
        QCOMPARE(ficheirosCom(programa.instalacao.ficheiro({}), segredo.toUtf8()), QStringList());
    }

    void alterarPalavraPasse_data() {
        // campos: present, new, confirmation
        const Tabela<QStringList, QString, QString> caso("campos", "mensagem", "fica");
        caso("not filled", {fabrica, u"Nova"_s, u""_s}, {}, fabrica);
        caso("blanks", {fabrica, u"  "_s, u"  "_s}, {}, fabrica);
        caso("wrong comes first", {u"vistrel"_s, u"Nova"_s, u"nova"_s}, u"PassWord Inválida"_s, fabrica);
        caso("not confirmed", {fabrica, u"Nova"_s, u"nova"_s}, u"A confirmação da nova PassWord está incorrecta"_s,
             fabrica);
        caso("changed", {fabrica, u"Ção-11 car."_s, u"Ção-11 car."_s}, u"PassWord alterada com Sucesso"_s,
             u"Ção-11 car."_s);
    }
    void alterarPalavraPasse() {
        QFETCH(const QStringList, campos);
        QFETCH(const QString, mensagem);
        QFETCH(const QString, fica);
        Programa programa;
        if (!mensagem.isEmpty())
            programa.instalacao.dialogos.esperarMensagem(mensagem);
        comDialogo(u"frmConfiguracoes"_s, [&](QDialog *dialogo) {
            controlo<QTabWidget>(dialogo, u"Tiras"_s)->setCurrentIndex(1);
            const QStringList nomes = {u"txtPassWord"_s, u"txtNewPassWord"_s, u"txtConfPassWord"_s};
            for (int i = 0; i < 3; ++i)
                escrever(dialogo, nomes[i], campos[i]);
            clicar(dialogo, u"cmdConfirmarPassword"_s);
            for (int i = 0; i < 3; ++i)
                QCOMPARE(texto(dialogo, nomes[i]), fica == fabrica ? campos[i] : QString());
        });
        QVERIFY(modPassWord::PassWordCorrecta(fica));
        QCOMPARE(modPassWord::PassWordCorrecta(fabrica), fica == fabrica);
    }

    void caminhosIncompletos() {
        Programa programa;
        const QString bd = programa.guardado(u"BD"_s, u"MAIN"_s);
        const QStringList campos{u"txtCaminhoBD"_s, u"txtCaminhoImagens"_s, u"txtINI_Path"_s};
        comDialogo(u"frmConfiguracoes"_s, [&](QDialog *dialogo) {
            for (const QString &vazio : campos) {
                for (const QString &campo : campos)
                    escrever(dialogo, campo, campo == vazio ? QString() : u"/outro/caminho"_s);
                programa.instalacao.dialogos.esperarMensagem(u"Dados Incorrectos"_s);
                clicar(dialogo, u"cmdConcluirDados"_s);
            }
        });
        QCOMPARE(programa.instalacao.dialogos.estilos.constLast(), Dialogos::Estilo::Exclamacao);
        QCOMPARE(programa.guardado(u"BD"_s, u"MAIN"_s), bd);
        QCOMPARE(programa.guardado(u"JPG"_s, u"MAIN"_s), QString());
        QVERIFY(!QFile::exists(programa.instalacao.pastaPrograma() + u"/Vistrel.ini"));
    }

    // The settings folder goes to a file that nobody reads it from.
    void caminhosGuardados() {
        Programa programa;
        const Instalacao &inst = programa.instalacao;
        const QString emVigor = modINI::GetINIPATH();
        programa.instalacao.dialogos.esperarMensagem(u"Dados Alterados Com Sucesso"_s);
        comDialogo(u"frmConfiguracoes"_s, [&](QDialog *dialogo) {
            QCOMPARE(texto(dialogo, u"txtCaminhoBD"_s), inst.caminhoBD());
            QCOMPARE(texto(dialogo, u"txtINI_Path"_s), emVigor);
            escrever(dialogo, u"txtCaminhoImagens"_s, u"./Saída"_s);
            escrever(dialogo, u"txtINI_Path"_s, inst.ficheiro(u"outra"_s));
            clicar(dialogo, u"cmdConcluirDados"_s);
        });
        QCOMPARE(programa.guardado(u"JPG"_s, u"MAIN"_s), u"./Saída"_s);
        QCOMPARE(modINI::LerValorINI(u"INI"_s, u"Path"_s, {}, inst.pastaPrograma() + u"/Vistrel.ini"),
                 inst.ficheiro(u"outra"_s));
        QCOMPARE(modINI::GetINIPATH(), emVigor);
        QVERIFY(estado().BDLigada);
        QVERIFY(!programa.guardado(u"FORMS"_s, u"frmConfiguracoesTOP"_s).isEmpty());
    }

    // Nothing is called a success that is not in its file afterwards; each path that is not is named with it.
    void caminhosPorGuardar() {
        Programa programa;
        Instalacao &inst = programa.instalacao;
        const QString definicoes = modINI::GetINIPATH() + u"Vistrel.ini";
        const QString antes = programa.guardado(u"BD"_s, u"MAIN"_s);
        QVERIFY(QFile::remove(definicoes) && QDir().mkpath(definicoes + u"/cheia")); // no file can take its place
        QDir().mkpath(inst.pastaPrograma() + u"/Vistrel.ini/cheia");
        inst.erros.tolerante = true; // nothing is left to read, either
        inst.dialogos.tolerante = true;
        comDialogo(u"frmConfiguracoes"_s, [&](QDialog *dialogo) {
            escrever(dialogo, u"txtCaminhoBD"_s, antes);
            escrever(dialogo, u"txtCaminhoImagens"_s, u"./Saída"_s);
            escrever(dialogo, u"txtINI_Path"_s, u"/outra"_s);
            clicar(dialogo, u"cmdConcluirDados"_s);
        });
        QCOMPARE(inst.dialogos.estilos.constLast(), Dialogos::Estilo::Critico);
        QVERIFY2(inst.dialogos.textos.constLast().endsWith(
                     u"\"%1\": ./Saída\nNão foi possível guardar em \"%2/Vistrel.ini\": /outra"_s.arg(
                         definicoes, inst.pastaPrograma())),
                 qPrintable(inst.dialogos.textos.constLast()));
    }

    void estadoDosCaminhos_data() {
        // caminho: below the temporary folder, unless it begins with a sign
        const Tabela<QString, QString, QString> caso("campo", "caminho", "estado");
        caso("database", u"CaminhoBD"_s, u"BD/Kelvark.mdb"_s, u"✓ Em condições"_s);
        caso("no database", u"CaminhoBD"_s, u"BD/Outra.mdb"_s, u"✗ Não existe o ficheiro"_s);
        caso("folder", u"CaminhoBD"_s, u"BD"_s, u"é uma pasta, não uma base de dados"_s);
        caso("text", u"CaminhoBD"_s, u"texto.mdb"_s, u"não é uma base de dados"_s);
        caso("old engine", u"CaminhoBD"_s, u"antiga.mdb"_s, u"formato do motor de base de dados antigo"_s);
        caso("export folder", u"CaminhoImagens"_s, u"BD"_s, u"✓ Em condições"_s);
        caso("to be made", u"CaminhoImagens"_s, u"novas/ainda"_s, u"⚠ A pasta será criada"_s);
        caso("beside the program", u"CaminhoImagens"_s, u"./Saída"_s, u"⚠ A pasta será criada"_s);
        caso("file for a folder", u"CaminhoImagens"_s, u"texto.mdb"_s, u"✗ Não é uma pasta"_s);
        caso("nowhere", u"CaminhoImagens"_s, u"texto.mdb/nada"_s, u"✗ Não é possível escrever"_s);
        caso("settings in force", u"INI_Path"_s, u"definicoes"_s, u"✓ Em condições"_s);
        caso("other settings", u"INI_Path"_s, u"BD"_s, u"⚠ Em vigor: "_s);
        caso("nothing", u"INI_Path"_s, u""_s, u"✗ Por preencher"_s);
    }
    void estadoDosCaminhos() {
        QFETCH(const QString, campo);
        QFETCH(const QString, caminho);
        QFETCH(const QString, estado);
        Programa programa;
        const Instalacao &inst = programa.instalacao;
        Instalacao::escreverFicheiro(inst.ficheiro(u"texto.mdb"_s), "isto não é uma base de dados");
        Instalacao::escreverFicheiro(inst.ficheiro(u"antiga.mdb"_s),
                                     QByteArray("\0\1\0\0Standard Jet DB\0", 20) + QByteArray(4096, '\0'));
        const bool tal = caminho.isEmpty() || caminho.startsWith(u'.') || caminho.startsWith(u'/');
        comDialogo(u"frmConfiguracoes"_s, [&](QDialog *dialogo) {
            escrever(dialogo, u"txt" + campo, tal ? caminho : inst.ficheiro(caminho));
            auto *etiqueta = controlo<QLabel>(dialogo, u"lblEstado" + campo);
            QVERIFY2(esperar([&] { return etiqueta->text().contains(estado); }), qUtf8Printable(etiqueta->text()));
        });
    }

    void baseTrocada_data() {
        // aviso: a message; relatorio: a report
        const Tabela<QString, QString, QString> caso("caminho", "aviso", "relatorio");
        caso("another one", u"outra/Boa.mdb"_s, {}, {});
        caso("none", u"outra/Nada.mdb"_s, u"AVISO: Base de Dados Inexistente."_s, {});
        caso("folder", u"outra"_s, {}, u"é uma pasta"_s);
        caso("text", u"texto.mdb"_s, {}, u"não é uma base de dados"_s);
    }
    // The success box follows whatever came of the new database, and the way back is open.
    void baseTrocada() {
        QFETCH(const QString, caminho);
        QFETCH(const QString, aviso);
        QFETCH(const QString, relatorio);
        Programa programa;
        Instalacao &inst = programa.instalacao;
        QDir().mkpath(inst.ficheiro(u"outra"_s));
        inst.criarBase(inst.ficheiro(u"outra/Boa.mdb"_s));
        Instalacao::escreverFicheiro(inst.ficheiro(u"texto.mdb"_s), "isto não é uma base de dados");
        if (!aviso.isEmpty())
            inst.dialogos.esperarMensagem(aviso);
        if (!relatorio.isEmpty())
            inst.erros.esperar(relatorio);
        inst.dialogos.esperarMensagem(u"Dados Alterados Com Sucesso"_s);
        inst.dialogos.esperarMensagem(u"Dados Alterados Com Sucesso"_s);
        comDialogo(u"frmConfiguracoes"_s, [&](QDialog *dialogo) {
            escrever(dialogo, u"txtCaminhoImagens"_s, inst.ficheiro(u"saida"_s));
            escrever(dialogo, u"txtCaminhoBD"_s, inst.ficheiro(caminho));
            clicar(dialogo, u"cmdConcluirDados"_s);
            const bool boa = aviso.isEmpty() && relatorio.isEmpty();
            QCOMPARE(ligacaoPartilhada().aberta(), boa);
            if (boa)
                QCOMPARE(cnBD().caminho(), inst.ficheiro(caminho));
            QCOMPARE(estado().CaminhoBD, inst.ficheiro(caminho));
            auto *barra = controlo<QLabel>(programa.principal.get(), u"lblCaminhoBD"_s);
            QCOMPARE(barra->text().contains(u"sem ligação"), !boa);
            escrever(dialogo, u"txtCaminhoBD"_s, inst.caminhoBD());
            clicar(dialogo, u"cmdConcluirDados"_s);
        });
        QCOMPARE(cnBD().caminho(), inst.caminhoBD());
        QVERIFY(estado().BDLigada);
    }

    void escolherCaminhos() {
        Programa programa;
        DialogosDeTeste &dialogos = programa.instalacao.dialogos;
        dialogos.responderAbrir(u"/dados/Outra.mdb"_s, u"*.mdb"_s);
        dialogos.responderPasta(u"/dados/saida"_s);
        dialogos.responderPasta({});
        comDialogo(u"frmConfiguracoes"_s, [&](QDialog *dialogo) {
            const QString antes = texto(dialogo, u"txtINI_Path"_s);
            clicar(dialogo, u"cmdCaminhoBD"_s);
            clicar(dialogo, u"cmdCaminhoImagens"_s);
            clicar(dialogo, u"cmdINI_Path"_s);
            QCOMPARE(texto(dialogo, u"txtCaminhoBD"_s), u"/dados/Outra.mdb"_s);
            QCOMPARE(texto(dialogo, u"txtCaminhoImagens"_s), u"/dados/saida/"_s);
            QCOMPARE(texto(dialogo, u"txtINI_Path"_s), antes); // cancelled
        });
    }

    void idioma() {
        Programa programa;
        const Instalacao &inst = programa.instalacao;
        inst.ficheiroLingua(u"EN"_s, {{u"VISTREL_frmMain"_s, u"mnuGeral"_s, u"General"_s}});
        modINI::SaveSettings(u"Vistrel"_s, {{u"Lingua"_s, u"1"_s, u"Português"_s},
                                            {u"Lingua"_s, u"L1"_s, u"PT"_s},
                                            {u"Lingua"_s, u"2"_s, u"English"_s},
                                            {u"Lingua"_s, u"L2"_s, u"EN"_s},
                                            {u"Lingua"_s, u"ACT"_s, u"1"_s}});
        comDialogo(u"frmConfiguracoes"_s, [&](QDialog *dialogo) {
            const QPointer<QDialog> vigiado = dialogo;
            controlo<QTabWidget>(dialogo, u"Tiras"_s)->setCurrentIndex(2);
            QCOMPARE(controlo<QComboBox>(dialogo, u"cboLingua"_s)->currentText(), u"Português - PT"_s);
            escolher(dialogo, u"cboLingua"_s, u"English - EN"_s);
            clicar(dialogo, u"cmdConluirIdioma"_s);
            QVERIFY(!vigiado || !vigiado->isVisible());
        });
        QCOMPARE(programa.guardado(u"Lingua"_s, u"ACT"_s), u"2"_s);
        QCOMPARE(estado().Lingua, u"EN"_s);
        QCOMPARE(controlo<QAction>(programa.principal.get(), u"Geral"_s)->text().remove(u'&'), u"General"_s);
    }

    // A number whose code was left empty takes no place of another's.
    void idiomaPeloCodigo() {
        Programa programa;
        modINI::SaveSettings(u"Vistrel"_s, {{u"Lingua"_s, u"1"_s, u"Português"_s},
                                            {u"Lingua"_s, u"L1"_s, u"PT"_s},
                                            {u"Lingua"_s, u"2"_s, u"Sem código"_s},
                                            {u"Lingua"_s, u"3"_s, u"English"_s},
                                            {u"Lingua"_s, u"L3"_s, u"EN"_s},
                                            {u"Lingua"_s, u"4"_s, u"English"_s},
                                            {u"Lingua"_s, u"L4"_s, u"EN"_s},
                                            {u"Lingua"_s, u"5"_s, u"Čeština"_s},
                                            {u"Lingua"_s, u"L5"_s, u"CZ"_s},
                                            {u"Lingua"_s, u"ACT"_s, u"3"_s}});
        comDialogo(u"frmConfiguracoes"_s, [&](QDialog *dialogo) {
            controlo<QTabWidget>(dialogo, u"Tiras"_s)->setCurrentIndex(2);
            QCOMPARE(controlo<QComboBox>(dialogo, u"cboLingua"_s)->currentText(), u"English - EN"_s);
            QCOMPARE(estado().Lingua, u"EN"_s);
            clicar(dialogo, u"cmdConluirIdioma"_s);
        });
        QCOMPARE(programa.guardado(u"Lingua"_s, u"ACT"_s), u"3"_s);
        QCOMPARE(estado().Lingua, u"EN"_s);
    }

    void idiomaForaDaLista() {
        Programa programa;
        modINI::SaveSettings(
            u"Vistrel"_s,
            {{u"Lingua"_s, u"1"_s, u"Português"_s}, {u"Lingua"_s, u"L1"_s, u"PT"_s}, {u"Lingua"_s, u"ACT"_s, u"4"_s}});
        programa.instalacao.erros.esperar(u"frmConfiguracoes.Form_Load"_s);
        comDialogo(u"frmConfiguracoes"_s, [&](QDialog *dialogo) {
            QCOMPARE(controlo<QComboBox>(dialogo, u"cboLingua"_s)->currentIndex(), -1);
            QVERIFY(!texto(dialogo, u"txtCaminhoBD"_s).isEmpty()); // the rest works
        });
    }

    void idiomaSemLista() {
        Programa programa;
        comDialogo(u"frmConfiguracoes"_s, [&](QDialog *dialogo) {
            auto *caixa = controlo<QComboBox>(dialogo, u"cboLingua"_s);
            QCOMPARE(caixa->count(), 1);
            QCOMPARE(caixa->currentText(), u"Português - PT"_s);
        });
        QCOMPARE(programa.guardado(u"Lingua"_s, u"ACT"_s), QString());
    }

    void paginaDeCodigo_data() {
        const Tabela<QString, int, bool> caso("codigo", "conjunto", "avisa");
        caso("Czech, western set", u"CZ"_s, 1, true);
        caso("Czech, its own", u"CZ"_s, 238, false);
        caso("another, Czech set", u"PT"_s, 238, true);
        caso("another, western set", u"EN"_s, 1, false);
        caso("wide text", u"CZ"_s, 0, false);
    }
    void paginaDeCodigo() {
        QFETCH(const QString, codigo);
        QFETCH(const int, conjunto);
        QFETCH(const bool, avisa);
        QCOMPARE(linguas::pedeOutraPagina(codigo, conjunto), avisa);
    }
};

QTEST_MAIN(tst_configuracoes)
#include "tst_configuracoes.moc"
