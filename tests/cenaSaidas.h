#pragma once

#include "tests/apoio/cenaVista.h"
#include "tests/apoio/ouro.h"
#include "views/forms/registar.h"

inline QString id(int n) {
    return u"28A00000000000%1"_s.arg(n, 2, 10, QChar(u'0'));
}

// An installation with sensors and a view on it.
struct Cena : CenaVista {
    explicit Cena(const QString &nome, const QString &tipo = u"P 1250C"_s) : CenaVista(registarVistas), m_nome(nome) {
        sensor({id(1), u"Câmara \"1\"; fria"_s, tipo});
        sensor({id(2), u"Arca 2"_s, tipo});
        executar(u"INSERT INTO Poseidons (PoseidonIP, Nome, Mac) VALUES ('127.0.0.2', 'Unidade', '00:0A')"_s);
    }
    void abrir(int sensores) {
        Vista::abrir(m_nome);
        for (int i = 0; i < sensores; ++i)
            clicar(form, u"cmdAdicionar"_s);
    }
    // The sensors of the one unit.
    void filtrarUnidade() {
        clicar(form, u"cmdGrupos"_s);
        auto *grupos = controlo<Grelha>(form, u"grdGrupos"_s);
        QCOMPARE(grupos->celula(1, 0), u"#P#127.0.0.2"_s);
        grupos->setLinhaActual(1);
        QTest::keyClick(grupos, Qt::Key_Return);
    }
    // The text of the printed pages, as a reader of PDF files finds it.
    QString textoImpresso(const QString &relatorio) {
        QPointer<JanelaRelatorio> janela = previsao(relatorio);
        if (!janela)
            return u"no preview"_s;
        const QString pdf = ficheiro(relatorio + u".pdf");
        janela->gravarPDF(pdf);
        janela->close();
        QProcess leitor;
        leitor.start(u"pdftotext"_s, {u"-layout"_s, pdf, u"-"_s});
        leitor.waitForFinished();
        // A reader gives "fi" back as the one letter that was drawn. Page numbers come out with or without blanks round
        // the stroke, as the letters happen to lie.
        return QString::fromUtf8(leitor.readAllStandardOutput())
            .replace(u"\ufb01"_s, u"fi"_s)
            .replace(QRegularExpression(u" */ *"_s), u" / "_s);
    }
    // Against the report's golden file. Blanks between columns count as one gap: their number follows the fonts.
    void conferirImpresso(const QString &relatorio) {
        QString texto = textoImpresso(relatorio);
        texto.replace(QRegularExpression(u" {2,}"_s), u"  "_s).replace(QRegularExpression(u"\\n{2,}"_s), u"\n"_s);
        const QByteArray diferenca = diferencaDoOuro(relatorio + u".txt", texto.toUtf8());
        QVERIFY2(diferenca.isEmpty(), diferenca.constData());
    }

private:
    QString m_nome;
};

inline const QString temperaturas = u"Temperaturas"_s;
