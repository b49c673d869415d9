// Sens-UI channels, inputs and outputs, conditions.
#include "devicestate/condicoes.h"
#include "devicestate/entradas.h"
#include "devicestate/familiaSensUI.h"
#include "devicestate/forms/listaMarcada.h"
#include "devicestate/forms/registar.h"
#include "devicestate/modSensUI.h"
#include "tests/apoio/cenaVista.h"

namespace {

const QString leiturasSensUI = u"SensUI_Leituras"_s;

struct Cena : CenaVista {
    Cena() : CenaVista(registarEstados) {}
    ListaMarcada &lista(const QString &nome) const { return *controlo<ListaMarcada>(form, nome); }
    void marcar(const QString &nome, int linha) const {
        lista(nome).setLinhaActual(linha);
        QTest::keyClick(&lista(nome), Qt::Key_Space);
    }
    QStringList textos(const QString &nome, int coluna) const {
        QStringList achados;
        for (int i = 0; i < lista(nome).linhas(); ++i)
            achados.append(lista(nome).texto(i, coluna));
        return achados;
    }
};

QList<double> alturas(const TSerie &serie) {
    return {serie.y().cbegin(), serie.y().cend()};
}

// One input of a unit, its twin on another device and a channel that no table knows.
void preencherEntradas(const Cena &c) {
    c.executar(u"INSERT INTO Poseidons (PoseidonIP, Nome) VALUES ('127.0.0.2', 'Frio')"_s);
    c.executar(u"INSERT INTO Damocles VALUES ('127.0.0.2', 'nunca'), ('127.0.0.21', 'Portaria')"_s);
    for (const QString &linha : {u"'127.0.0.2', 1, '2024-03-15 08:00:00', 'True', ' '"_s,
                                 u"'127.0.0.2', 1, '2024-03-15 10:00:00', 'True', ''"_s,
                                 u"'127.0.0.2', 1, '2024-03-15 10:00:00', 'False', NULL"_s,
                                 u"'127.0.0.2', 1, '2024-03-15 09:00:00', 'false', 'visto'"_s,
                                 u"'127.0.0.9', 302, '2024-03-15 09:00:00', 'True', ' '"_s,
                                 u"'127.0.0.21', 1, '2024-03-15 08:30:00', 'True', ' '"_s})
        c.executar(u"INSERT INTO REGISTO_Inputs VALUES (%1)"_s.arg(linha));
}

} // namespace

class TesteEstados : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void dadosSensUI_data() {
        const Tabela<QString, QString, QList<double>, double, double> caso("ident", "observacoes", "numeros", "maximo",
                                                                           "minimo");
        caso("both", u"20X4X100X0,5"_s, u"30,5XXX-2.5"_s, {20, 4, 100, 0.5}, 30.5, -2.5);
        caso("blank", u""_s, u" "_s, {}, qQNaN(), qQNaN());
        caso("none", u"1X2X3X4"_s, u"NAXXXNA"_s, {1, 2, 3, 4}, qQNaN(), qQNaN());
    }
    void dadosSensUI() {
        const Instalacao instalacao;
        QFETCH(const QString, ident);
        QFETCH(const QString, observacoes);
        QFETCH(const QList<double>, numeros);
        const DadosSensUI d = modSensUI::BuscarDadosSensUI(u"51,27"_s, {}, ident, observacoes, u"Nível"_s, u"S"_s);
        QCOMPARE(d.leitura, u"51,27"_s);
        QCOMPARE(d.escala, u"Nível"_s);
        QCOMPARE(QList<double>(d.ident.begin(), d.ident.end()), numeros);
        QTEST(d.limites.maximo, "maximo");
        QTEST(d.limites.minimo, "minimo");
    }

    // Each form of points writes to the table of its chart.
    void familia() {
        QList<MembroGrafico> graficos(familiaSensUI::graficos().begin(), familiaSensUI::graficos().end());
        for (const entradas::Especie &e : entradas::especies())
            graficos.append(e.grafico);
        for (const condicoes::Especie &e : condicoes::especies())
            graficos.append(e.grafico);
        for (const MembroGrafico &m : std::as_const(graficos)) {
            QCOMPARE(m.pontos->tabela, m.tabela.nome);
            QCOMPARE(m.pontos->grafico, m.form);
        }
    }

    // Only voltages and currents, of a unit whatever the digit before its address.
    void sensoresSensUI() {
        Cena c;
        c.sensores({{u"1"_s, u"tensão"_s, u"P 1250V"_s, u"SIM"_s, 1, u"POSEIDON"_s, u"1127.0.0.2"_s},
                    {u"2"_s, u"corrente"_s, u"P 1250A"_s, u"SIM"_s, 2, u"POSEIDON"_s, u"2127.0.0.2"_s},
                    {u"3"_s, u"outra unidade"_s, u"P 1250V"_s, u"SIM"_s, 1, u"POSEIDON"_s, u"1127.0.0.3"_s},
                    {u"4"_s, u"grau"_s, u"P 1250C"_s},
                    {u"5"_s, u"só V"_s, u"V"_s}});
        c.executar(u"INSERT INTO Poseidons (PoseidonIP, Nome) VALUES ('127.0.0.2', 'Frio')"_s);
        c.abrir(u"frmGraficoSensUI"_s);
        auto *todos = controlo<Grelha>(c.form, u"grdSensoresAll"_s);
        QCOMPARE(todos->linhas(), 3);
        clicar(c.form, u"cmdGrupos"_s);
        Q_EMIT controlo<Grelha>(c.form, u"grdGrupos"_s)->RequestEdit(1);
        QCOMPARE(todos->linhas(), 2);
        QCOMPARE(todos->celula(0, 1), u"tensão"_s);
        QCOMPARE(todos->celula(1, 1), u"corrente"_s);
    }

    void sensUI() {
        Cena c;
        c.sensor({u"28A0000000000001"_s, u"Nível"_s, u"P 1250A"_s, u"SIM"_s, 1, u"POSEIDON"_s, u"2127.0.0.5"_s});
        c.executar(u"INSERT INTO Poseidons (PoseidonIP, Nome, Mac) VALUES ('127.0.0.5', 'Cave', '00:0A')"_s);
        c.leituras(
            leiturasSensUI, u"28A0000000000001"_s,
            {{dia + u"01:00:00", u"7,5"_s, u"8,5XXX2"_s}, {dia + u"02:00:00", u"51.27"_s, u"8,5XXX2"_s, u"nota"_s}});
        c.leituras(leiturasSensUI, u"28A0000000000001"_s, {{u"2024-03-14 02:00:00"_s, 4, u" "_s, u" "_s}});
        c.executar(u"UPDATE SensUI_Leituras SET NomeSensor = 'Nível', Escala = '0-10 m', Ident = '20X4X10X0'"_s);
        c.abrir(u"frmGraficoSensUI"_s);
        clicar(c.form, u"cmdAdicionar"_s);
        c.confirmar();
        QCOMPARE(alturas(c.chart().Series(0)), QList<double>({7.5, 51.27}));
        QCOMPARE(c.chart().Series(0).estado(1), EstadoDoPonto::Acima);
        QCOMPARE(c.chart().Series(1).YValue(0), 8.5);
        QVERIFY(!c.chart().Series(0).temMarca(0) && c.chart().Series(0).temMarca(1));
        // Ident as it is stored, all else as numbers of the locale.
        QCOMPARE(c.exportarCSV(), QByteArray("15/03/2024 01:00:00;28A0000000000001;Nível;7,5;20X4X10X0;8,5;2\r\n"
                                             "15/03/2024 02:00:00;28A0000000000001;Nível;51,27;20X4X10X0;8,5;2\r\n"));
        c.notar(u"frmOpccoesPontosSensUI"_s, 0, 0, u" verificada "_s);
        QCOMPARE(c.linha(u"SELECT flag FROM SensUI_Leituras WHERE Data > '2024-03-15' ORDER BY Data"_s),
                 QVariantList({u"verificada"_s}));

        // A lone blank is no alarm.
        c.abrir(u"frmListagemAlarmesSensUi"_s);
        clicar(c.form, u"cmdAdicionar"_s);
        controlo<QDateEdit>(c.form, u"DTPdataInicio"_s)->setDate(QDate(2024, 3, 14));
        c.confirmar();
        auto *grelha = controlo<QTableView>(c.form, u"DataGrid"_s);
        QCOMPARE(grelha->model()->rowCount(), 2);
        QStringList primeira;
        for (int i = 0; i < 8; ++i)
            primeira.append(grelha->model()->index(0, i).data().toString());
        QCOMPARE(primeira, QStringList({u"28A0000000000001"_s, u"Nível"_s, u"15/03/2024 02:00:00"_s, u"8,5"_s, u"2"_s,
                                        u"51,27"_s, u"0-10 m"_s, u"8,5XXX2"_s}));
        QCOMPARE(grelha->model()->index(1, 5).data().toString(), u"7,50"_s);
        c.abrir(u"frmGraficoHistogramaSensUI"_s);
        clicar(c.form, u"cmdAdicionar"_s);
        c.confirmar();
        QCOMPARE(c.legenda(u"lblTotal"_s), u"N° de Leituras = 2"_s);
        QCOMPARE(c.impresso(u"lblSensores"_s), u"Sensores: Nível [0-10 m]"_s);
        QVERIFY(c.impresso(u"lblDescricao"_s).startsWith(u"Poseidon: 127.0.0.5 - Cave  "));
    }

    void listasDeCanais() {
        Cena c;
        preencherEntradas(c);
        c.abrir(u"frmGraficoInputs"_s);
        const QString dispositivos = u"grdDispositivos"_s;
        QCOMPARE(c.textos(dispositivos, 0), QStringList({u"127.0.0.2"_s, u"127.0.0.21"_s, u"127.0.0.9"_s}));
        QCOMPARE(c.textos(dispositivos, 1), QStringList({u"Frio"_s, u"Portaria"_s, u""_s}));
        QCOMPARE(c.lista(dispositivos).estadoDaLinha(0), EstadoDaLinha::Impar);
        c.marcar(dispositivos, 0);
        c.marcar(dispositivos, 2);
        QCOMPARE(c.lista(dispositivos).estadoDaLinha(0), EstadoDaLinha::Marcada);
        QCOMPARE(c.textos(u"grdInputs"_s, 0), QStringList({u"1"_s, u"302"_s}));
        c.marcar(dispositivos, 0); // no more
        QCOMPARE(c.textos(u"grdInputs"_s, 0), QStringList({u"302"_s}));
    }

    void nomesDosCanais_data() {
        // tabelas: each with a name of its own, in the order of asking
        const Tabela<int, QStringList> caso("especie", "tabelas");
        caso("inputs", 0,
             {u"PoseidonInputs (PoseidonIP, InputNum, Descricao)"_s,
              u"DamoclesInputs (DamoclesIP, InputNum, Descricao)"_s,
              u"IOcontrollersInputs (ioip, InputNum, Descricao)"_s,
              u"PoseidonInputsSpider (PoseidonIP, InputID, Descricao)"_s});
        caso("outputs", 1,
             {u"IOcontrollersOutputs (ioip, OutputNum, Descricao)"_s,
              u"PoseidonOutputs (PoseidonIP, OutputNum, Descricao)"_s,
              u"DamoclesOutputs (DamoclesIP, OutputNum, Descricao)"_s});
    }
    // From the last to the first: each that is filled wins over those before.
    void nomesDosCanais() {
        QFETCH(const int, especie);
        QFETCH(const QStringList, tabelas);
        const Instalacao instalacao;
        const entradas::Especie &e = entradas::especies()[size_t(especie)];
        QCOMPARE(entradas::BuscarNomePorCodigo(e, u"127.0.0.2"_s, u"302"_s), QString());
        for (qsizetype i = tabelas.size() - 1; i >= 0; --i) {
            instalacao.executar(u"INSERT INTO %1 VALUES ('127.0.0.2', 302, ?)"_s.arg(tabelas[i]), {tabelas[i]});
            QCOMPARE(entradas::BuscarNomePorCodigo(e, u"127.0.0.2"_s, u"302"_s), tabelas[i]);
        }
        QCOMPARE(entradas::BuscarNomePorCodigo(e, u"127.0.0.2"_s, u"301"_s), QString());
    }

    void entradasDigitais() {
        Cena c;
        preencherEntradas(c);
        c.executar(u"INSERT INTO DamoclesInputs VALUES ('127.0.0.21', 1, 'Campainha')"_s);
        c.abrir(u"frmGraficoInputs"_s);
        c.marcar(u"grdDispositivos"_s, 0);
        c.marcar(u"grdDispositivos"_s, 1);
        c.marcar(u"grdInputs"_s, 0);
        c.marcar(u"grdInputs"_s, 1);
        c.confirmar();
        QCOMPARE(c.chart().SeriesCount(), 5);
        const TSerie &serie = c.chart().Series(3);
        QCOMPARE(serie.Title, u"127.0.0.2 - 1"_s); // no table has its name
        QCOMPARE(c.chart().Series(4).Title, u"Campainha"_s);
        QCOMPARE(serie.estilo, TSerie::Estilo::Degrau);
        // What was written second within a second stays second.
        QCOMPARE(alturas(serie), QList<double>({1, 0, 1, 0}));
        QVERIFY(!serie.temMarca(0) && serie.temMarca(1) && !serie.temMarca(2) && !serie.temMarca(3));
        // The file keeps the order of the table.
        QCOMPARE(c.exportarCSV(),
                 QByteArray("15/03/2024 08:00:00;127.0.0.2;1;1\r\n15/03/2024 10:00:00;127.0.0.2;1;1\r\n"
                            "15/03/2024 10:00:00;127.0.0.2;1;0\r\n15/03/2024 09:00:00;127.0.0.2;1;0\r\n"
                            "15/03/2024 08:30:00;127.0.0.21;1;1\r\n"));
        c.notar(u"frmOpccoesPontosInputs"_s, 4, 0, u"técnico"_s);
        QCOMPARE(c.linha(u"SELECT flag FROM REGISTO_Inputs WHERE DispositivoIP = '127.0.0.21'"_s),
                 QVariantList({u"técnico"_s}));
        QVERIFY(c.chart().Series(4).temMarca(0));
        c.notar(u"frmOpccoesPontosInputs"_s, 3, 1, u"  "_s);
        QCOMPARE(c.linha(u"SELECT flag FROM REGISTO_Inputs WHERE Data LIKE '%09:00:00'"_s), QVariantList({u" "_s}));
        QVERIFY(!c.chart().Series(3).temMarca(1));
    }

    // Keys that no text can carry: each is left behind once, and nobody waits for the end of the list for ever.
    void chavesIlegiveis() {
        Instalacao instalacao;
        instalacao.executar(u"INSERT INTO REGISTO_Inputs (DispositivoIP, InputNum) VALUES ('b', 1), (x'6200ff', 2), "
                            "(CAST(x'61ff' AS TEXT), 3), ('a', 4), ('', 5), (x'', 6), ('c', 'x'), ('c', 1.5)"_s);
        QObject dono;
        instalacao.erros.esperar(u"de fora: 3. O primeiro: tabela REGISTO_Inputs, sensor DispositivoIP"_s);
        QStringList ips;
        for (const entradas::Canal &d : entradas::dispositivos(entradas::especies()[0], Vigia(&dono)))
            ips.append(d.ip);
        QCOMPARE(ips, QStringList({u""_s, u"a"_s, u"b"_s, u"c"_s}));
        QCOMPARE(entradas::canais(entradas::especies()[0], u"c"_s, Vigia(&dono)).size(), 2);
    }

    void condicoesProduto() {
        const Instalacao instalacao;
        const condicoes::Especie &e = condicoes::especies()[0];
        instalacao.executar(u"INSERT INTO REGISTO_C_Inputs (CondicaoID) VALUES ('C2'), ('C1'), ('c1'), (NULL)"_s);
        QObject dono;
        QVERIFY(condicoes::listar(e, Vigia(&dono)).isEmpty()); // no name, no row
        instalacao.executar(
            u"INSERT INTO REGRAS_CondicoesInputs VALUES ('C1', 'Porta'), ('C9', 'Corte'), ('C3', 'Porta')"_s);
        QStringList lista;
        for (const Escolha &escolha : condicoes::listar(e, Vigia(&dono)))
            lista.append(escolha.chave.first() + u' ' + escolha.nome);
        QCOMPARE(lista, QStringList({u"C1 Corte"_s, u"C1 Porta"_s, u"C2 Corte"_s, u"C2 Porta"_s}));
    }

    void condicoes_data() {
        const Tabela<QString, QString, QString, QString> caso("sufixo", "tabela", "nomes", "titulo");
        caso("inputs", u"Inputs"_s, u"REGISTO_C_Inputs"_s, u"REGRAS_CondicoesInputs (NomeCondicao)"_s,
             u"Gráfico de Inputs"_s);
        caso("sensors", u"Sensores"_s, u"REGISTO_C_Sensores"_s, u"REGRAS_CondicoesSensores (NomeCondicao)"_s,
             u"Gráfico de Inputs"_s);
        caso("groups", u"GroupCond"_s, u"REGISTO_C_Grupos"_s, u"REGRAS_CondicoesGruposHead (Nome)"_s,
             u"Gráfico de grupos de condições"_s);
    }
    void condicoes() {
        QFETCH(const QString, sufixo);
        QFETCH(const QString, tabela);
        QFETCH(const QString, nomes);
        QFETCH(const QString, titulo);
        Cena c;
        c.executar(u"INSERT INTO %1 VALUES ('Porta')"_s.arg(nomes));
        // One that began before the range, one within, one that still runs.
        for (const QString &linha : {u"'C1', '2024-03-14 23:00:00', '2024-03-15 01:00:00', ' '"_s,
                                     u"'C1', '2024-03-15 02:00:00', '2024-03-16 03:00:00', 'x'"_s,
                                     u"'C1', '2024-03-15 04:00:00', NULL, ' '"_s})
            c.executar(u"INSERT INTO %1 VALUES (%2)"_s.arg(tabela, linha));
        c.abrir(u"frmGraficoREGISTO_C_"_s + sufixo);
        QCOMPARE(c.form->windowTitle(), titulo);
        QVERIFY(!c.form->findChild<QAction *>(u"mnuExportCSV"_s));
        c.marcar(u"grdCondicoes"_s, 0);
        c.confirmar();
        const TSerie &serie = c.chart().Series(3);
        QCOMPARE(alturas(serie), QList<double>({1, 0, 1}));
        QVERIFY(serie.temMarca(0) && serie.temMarca(1) && !serie.temMarca(2));
        const QString pontos = u"frmOpccoesPontosREGISTO_C_"_s + sufixo;
        const QString nota = u"SELECT flag FROM %1 WHERE DataOFF LIKE '%03:00:00'"_s.arg(tabela);
        c.notar(pontos, 3, 1, u"pelo fim"_s);
        QCOMPARE(c.linha(nota), QVariantList({u"pelo fim"_s}));
        // On paper all three bear the title of the averages.
        QCOMPARE(c.impresso(u"lblTitulo"_s), u"Gráfico de Médias de Temperaturas"_s);
        c.notar(pontos, 3, 0, u""_s);
        QCOMPARE(c.linha(nota), QVariantList({u" "_s}));
    }
};

QTEST_MAIN(TesteEstados)
#include "tst_estados.moc"
