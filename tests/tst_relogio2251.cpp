#include "poseidon/relogio2251.h"
#include "tests/apoio/instalacao.h"

using namespace relogio2251;

namespace {

QString documento(const QString &data, const QString &hora) {
    return u"<Root><Time><Date>%1</Date><Time>%2</Time></Time></Root>"_s.arg(data, hora);
}

} // namespace

class tst_relogio2251 : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void comparacao_data() { // now is 2024-03-15 00:10:00
        const Tabela<QString, int> caso("xml", "resultado");
        caso("20 minutes behind", documento(u"14.03.2024"_s, u"23:50:00"_s), 1);
        caso("a second more", documento(u"14.03.2024"_s, u"23:49:59"_s), 0);
        caso("20 minutes ahead", documento(u"15.3.2024"_s, u"0:30:0"_s), 1);
        caso("21 minutes ahead", documento(u"15.03.2024"_s, u"00:31:00"_s), 0);
        caso("two digits of the year", documento(u"15.03.24"_s, u"00:10:00"_s), 1);
        caso("other order", documento(u"2024-03-15"_s, u"00:10:00"_s), -3);
        caso("year first", documento(u"2024.03.15"_s, u"00:10:00"_s), -3);
        caso("hour alone", documento(u"15.03.2024"_s, u"10"_s), -3);
        caso("the last one wins",
             u"<Root><Time><Date>15.03.2024</Date><Time>00:10:00</Time></Time>"
             "<Time><Date>1.1.2000</Date></Time></Root>"_s,
             0);
        caso("no Time", u"<Root><Agent/></Root>"_s, -2);
        caso("no document", {}, -1);
        caso("half a document", u"<Root><Time><Date>15.03.2024</Da"_s, -1);
    }
    void comparacao() {
        Instalacao inst(Instalacao::Base::Nenhuma);
        inst.relogio(u"2024-03-15 00:10:00"_s);
        QFETCH(QString, xml);
        QTEST(int(VerificarDataDoPoseidon(xml).resultado), "resultado");
    }

    void dialogo_data() {
        // vai: "#" closes
        const Tabela<QStringList, QStringList> caso("chega", "vai");
        const QStringList teclas{u"\r"_s, u"\r"_s, u"y"_s, u"c07.03.2011/09:05:00"_s, u"\r"_s, u"x"_s};
        const QStringList menus{u"A"_s, u"B"_s, u"C"_s, u"D"_s, u"E"_s, u"F"_s};
        caso("confirmed later", (menus + QStringList{u"wait"_s, u"not ok"_s, u"OK bye"_s}),
             (teclas + QStringList{{}, {}, u"#"_s}));
        caso("in two pieces", (menus + QStringList{u"O"_s, u"K"_s}), (teclas + QStringList{{}, u"#"_s}));
        caso("never", (menus + QStringList{u"ERR"_s, u"0"_s, u"123"_s}), (teclas + QStringList{{}, {}, {}}));
        caso("digits and the end", {u"123"_s}, teclas.mid(0, 1));
    }
    void dialogo() {
        Instalacao inst(Instalacao::Base::Nenhuma);
        inst.relogio(u"2011-03-07 09:05:00"_s);
        QFETCH(QStringList, chega);
        QFETCH(QStringList, vai);
        Dialogo d;
        QStringList enviado;
        for (const QString &texto : chega) {
            const Dialogo::Resposta r = d.receber(texto);
            enviado += r.fechar ? u"#"_s : r.enviar;
        }
        QCOMPARE(enviado, vai);
        QCOMPARE(d.confirmado(), vai.last() == u"#");
    }

    void resultados() {
        Instalacao inst(Instalacao::Base::Nenhuma);
        const QString erro = u"Erro ao actualizar a data\\hora: "_s;
        const std::tuple<QString, QString, bool> casos[] = {
            {documento(u"15.03.2020"_s, u"10:00:00"_s), erro + u"1"_s, true},
            {u"<Root>"_s, erro + u"2"_s, true},
            {u"<Root/>"_s, u"Data\\hora actualizada: "_s, false}, // no time in it reads as done
            {{}, u"Imposivel verificar se a data\\hora foi actualizada com sucesso"_s, true}};
        for (const auto &[xml, texto, critica] : casos) {
            const Mensagem dita = mensagemDoAcerto(resultadoDoAcerto(true, xml));
            QCOMPARE(dita.texto, texto);
            QCOMPARE(dita.critica, critica);
        }
        QCOMPARE(mensagemDoAcerto({}).texto, u"Erro desconhecido ao actualizar a data\\hora"_s);
    }
};

QTEST_GUILESS_MAIN(tst_relogio2251)
#include "tst_relogio2251.moc"
