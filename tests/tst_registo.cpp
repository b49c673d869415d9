#include "data/modMain.h"
#include "tests/apoio/instalacao.h"

class tst_registo : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void unidades() {
        Instalacao inst;
        inst.executar(u"INSERT INTO Poseidons (PoseidonIP, Nome, Mac) VALUES ('http://O''Neil/', 'Câmara', NULL)"_s);
        QString nome, mac = u"before"_s;
        modMain::BuscarNomePoseidonPorID(u"  http://o'neil/ "_s, nome, mac);
        QCOMPARE(nome + u'|' + mac, u"Câmara|"_s);
        nome = mac = u"before"_s;
        modMain::BuscarNomePoseidonPorID(u"127.0.0.9"_s, nome, mac);
        QCOMPARE(nome + mac, QString());

        inst.sensor({u"A'000000000000001"_s, u"Um"_s});
        QCOMPARE(modMain::BuscarPoseidonPorIDSensor(u" A'000000000000001 "_s), u"2127.0.0.2"_s);
        QCOMPARE(modMain::BuscarPoseidonPorIDSensor(u"outro"_s), QString());

        ligacaoPartilhada().fechar();
        nome = u"before"_s;
        inst.erros.esperar(u"modMain.BuscarNomePoseidonPorID"_s);
        modMain::BuscarNomePoseidonPorID(u"127.0.0.9"_s, nome, mac);
        QCOMPARE(nome, QString());
    }

    void nomesEmTodasAsTabelas() {
        Instalacao inst;
        // Every text column of the schema that bears such a name: all count but the ones of tables that are not named
        // things of the installation.
        const QStringList naoContam = u"CMDGrupos.Descricao Alarmes.Nome AlarmesHum.Nome AlarmesPOrv.Nome "
                                      "AlarmesPressao.Nome MaskListaAlarmes.Descricao MaskUtilizadores.Nome "
                                      "REGRAS_CondicoesGruposHead.Nome"_s.split(u' ');
        QStringList colunas;
        Recordset rs = cnBD().consultar(
            u"SELECT m.name || '.' || c.name FROM sqlite_master m, pragma_table_info(m.name) c WHERE m.type = 'table' "
            "AND c.name IN ('Nome', 'Descricao', 'NomeCondicao', 'NomeEscala')"_s);
        while (rs.avancar())
            colunas += rs.texto(0);
        for (const QString &coluna : std::as_const(colunas)) {
            const QString nome = u"Câmara d'água "_s + coluna;
            QVERIFY(!modMain::VerificarSeDescricaoJaExiste(nome));
            inst.executar(u"INSERT INTO %1 (%2) VALUES (?)"_s.arg(coluna.section(u'.', 0, 0), coluna.section(u'.', 1)),
                          {nome});
            QVERIFY2(modMain::VerificarSeDescricaoJaExiste(nome) != naoContam.contains(coluna), qPrintable(coluna));
        }
        QCOMPARE(colunas.size(), 20 + naoContam.size());
        inst.executar(u"DROP TABLE PortBox"_s);
        inst.erros.esperar(u"modMain.VerificarSeDescricaoJaExiste"_s);
        QVERIFY(!modMain::VerificarSeDescricaoJaExiste(u"Câmara d'água Sensores.Descricao"_s));
    }

    void novaDescricao_data() {
        const Tabela<QString, QString, QStringList, QString> caso("base", "sufixo", "tomadas", "esperada");
        const QString longa = u"123456789012345678901234567890"_s;
        caso("free, however long", longa, u"T"_s, {}, longa + u" T"_s);
        caso("taken twice", u"Arca"_s, u"Temp"_s, {u"Arca Temp"_s, u"arca temp(1)"_s}, u"Arca Temp(2)"_s);
        caso("twenty stay", u"123456789012345"_s, u"T"_s, {u"123456789012345 T"_s}, u"123456789012345 T(1)"_s);
        QStringList dez = {longa + u" T"_s};
        for (int n = 1; n <= 9; ++n)
            dez += u"123456789012345 T(%1)"_s.arg(n);
        caso("more digits, shorter base", longa, u"T"_s, dez, u"12345678901234 T(10)"_s);
        const QString rosto = u"12345678901234"_s + QChar(0xD83D) + QChar(0xDE00);
        caso("no half characters", rosto, u"T"_s, {rosto + u" T"_s}, u"12345678901234 T(1)"_s);
        caso("base used up", u"Base"_s, u"1234567890123456"_s, {u"Base 1234567890123456"_s}, u" 1234567890123456(1)"_s);
    }
    void novaDescricao() {
        QFETCH(QString, base);
        QFETCH(QString, sufixo);
        QFETCH(QStringList, tomadas);
        const Instalacao inst;
        for (const QString &nome : tomadas)
            inst.executar(u"INSERT INTO Sensores (SensorID, Descricao) VALUES (?1, ?1)"_s, {nome});
        QTEST(modMain::CriarNovaDescricao(base, sufixo), "esperada");
    }

    void novaDescricaoEsgotada() {
        Instalacao inst;
        inst.executar(u"WITH n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 999) INSERT INTO Grupos "
                      "(Descricao) SELECT 'Arca T(' || i || ')' FROM n UNION SELECT 'Arca T'"_s);
        QCOMPARE(modMain::CriarNovaDescricao(u"Arca"_s, u"T"_s), u"Arca T(1000)"_s);
        inst.executar(u"INSERT INTO Grupos (Descricao) VALUES ('Arca T(1000)')"_s);
        QCOMPARE(modMain::CriarNovaDescricao(u"Arca"_s, u"T"_s), QString());
        const QString sufixo(18, u'x'); // leaves no room for a number
        inst.sensor({u"A"_s, u"Arca "_s + sufixo});
        inst.erros.esperar(u"modMain.CriarNovaDescricao"_s);
        QCOMPARE(modMain::CriarNovaDescricao(u"Arca"_s, sufixo), QString());
    }

    // "%P" stands for the program's folder, "%T" for the installation's.
    void pastaDeHoje_data() {
        const Tabela<QString, QString> caso("definicao", "esperada");
        caso("blank", u"   "_s, u"%P/JPG/2024/3/5"_s);
        caso("with accents", u"%T/Exportação d'água"_s, u"%T/Exportação d'água/2024/3/5"_s);
        caso("slash behind", u"%T/a/b/"_s, u"%T/a/b/2024/3/5"_s);
        caso("backslash behind", u"%T/exp\\"_s, u"%T/exp/2024/3/5"_s);
        caso("dot alone", u"."_s, u"%P/2024/3/5"_s);
        caso("written with backslashes", u".\\exp\\jpg\\"_s, u"%P/exp/jpg/2024/3/5"_s);
        caso("beside the program", u"../exp"_s, u"%P/../exp/2024/3/5"_s);
    }
    void pastaDeHoje() {
        QFETCH(QString, definicao);
        QFETCH(QString, esperada);
        Instalacao inst(Instalacao::Base::Nenhuma);
        inst.relogio(u"2024-03-05 09:08:07"_s);
        modINI::SaveSetting(estado().NomePrograma, u"JPG"_s, u"MAIN"_s, definicao.replace(u"%T"_s, inst.ficheiro({})));
        esperada.replace(u"%T"_s, inst.ficheiro({})).replace(u"%P"_s, inst.pastaPrograma());
        QCOMPARE(modMain::CriarCaminhoJPG(), esperada);
        QVERIFY(QFileInfo(esperada).isDir());
        QCOMPARE(modMain::CriarCaminhoJPG(), esperada); // also when it is there
    }

    void caminhosPropostos() {
        Instalacao inst(Instalacao::Base::Nenhuma);
        inst.relogio(u"2024-12-25 09:08:07"_s);
        const QString pasta = inst.pastaPrograma() + u"/JPG/2024/12/25"_s;
        QCOMPARE(modMain::CriarCaminhoCSV(u"AvgTemp"_s), pasta + u"/AvgTemp09-08-07.csv"_s);
        QVERIFY(QFileInfo(pasta).isDir());
        inst.relogio(u"2024-12-25 23:00:59"_s);
        QCOMPARE(modMain::CriarCaminhoJPG(u"a b"_s), pasta + u"/a b23-00-59.jpg"_s);
        // A folder that cannot be made is named all the same, without a report: the dialog lets the user choose
        // another.
        Instalacao::escreverFicheiro(inst.ficheiro(u"ocupado"_s), "x");
        modINI::SaveSetting(estado().NomePrograma, u"JPG"_s, u"MAIN"_s, inst.ficheiro(u"ocupado"_s));
        QCOMPARE(modMain::CriarCaminhoJPG(), inst.ficheiro(u"ocupado/2024/12/25"_s));
    }

    void criarPastas() {
        const Instalacao inst(Instalacao::Base::Nenhuma);
        QVERIFY(modMain::CriarPastas(inst.ficheiro(u"um/dois/três"_s)));
        QVERIFY(QFileInfo(inst.ficheiro(u"um/dois/três"_s)).isDir());
        Instalacao::escreverFicheiro(inst.ficheiro(u"f"_s), "x");
        // There already, without a parent, below a file.
        for (const QString &caminho : {inst.pastaPrograma(), u"/tmp"_s, u"um"_s, u""_s, inst.ficheiro(u"f/um"_s)})
            QVERIFY2(!modMain::CriarPastas(caminho), qPrintable(caminho));
        QVERIFY(!QFileInfo::exists(u"um"_s));
    }

    void validarIP() {
        for (const QString &bom : {u"0.0.0.0"_s, u"255.255.255.255"_s, u"  10.1.2.3 "_s, u"010.001.002.003"_s})
            QVERIFY2(modMain::ValidarIP(bom), qPrintable(bom));
        const QString maus = u"|  |1.2.3|1.2.3.4.5|.1.2.3|1.2.3.|1.2.3.4.|1..2.3|1.2.3.256|1.2.3.-4|1.2.3.4a|1.2. 3.4|"
                             "1.2.3.99999999999999999999|1,2,3,4|1.2.3.+4|1.2.3.\u0664|http://1.2.3.4"_s;
        for (const QString &mau : maus.split(u'|'))
            QVERIFY2(!modMain::ValidarIP(mau), qPrintable(mau));
    }
};

QTEST_GUILESS_MAIN(tst_registo)
#include "tst_registo.moc"
