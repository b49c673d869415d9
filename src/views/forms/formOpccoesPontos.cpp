#include "views/forms/formOpccoesPontos.h"

#include "core/datas.h"
#include "core/literais.h"
#include "core/modTraducoes.h"
#include "core/rotina.h"
#include "core/textoMostrado.h"
#include "platform/chart/TChart.h"
#include "views/notas.h"

#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

#include <algorithm>

namespace {

QLabel *criarEtiqueta(const QString &nome, const QString &texto, QWidget *parceiro) {
    auto *etiqueta = new QLabel(texto);
    etiqueta->setObjectName(nome);
    etiqueta->setBuddy(parceiro);
    parceiro->setAccessibleName(texto);
    return etiqueta;
}

} // namespace

FormOpccoesPontos::FormOpccoesPontos(const MembroPontos &membro, const PontoActual &ponto, TChart *chart, QWidget *dono)
    : QDialog(dono), m_membro(membro), m_ponto(ponto), m_chart(chart) {
    setObjectName(membro.form.toString());
    setWindowTitle(textoMostrado::linha(ponto.descricao));
    montar();
    CarregarDescricao();
}

QString FormOpccoesPontos::texto(const QString &chave, const QString &omissao) const {
    const QStringView form = m_membro.seccaoDe.isEmpty() ? m_membro.form : m_membro.seccaoDe;
    return modTraducoes::texto(modTraducoes::seccaoDe(form.toString()), chave, omissao);
}

QLineEdit *FormOpccoesPontos::criarCampo(const QString &nome, const QString &conteudo) {
    auto *campo = new QLineEdit(textoMostrado::linha(conteudo));
    campo->setObjectName(nome);
    campo->setReadOnly(true);
    // Looks like what it is: text that can be copied, not a box to write in.
    campo->setFrame(false);
    QPalette tons;
    tons.setBrush(QPalette::Base, Qt::NoBrush);
    campo->setPalette(tons);
    campo->setCursorPosition(0);
    campo->setToolTip(conteudo);
    // As wide as what it says, within reason.
    const QFontMetrics letra = campo->fontMetrics();
    campo->setMinimumWidth(std::clamp(letra.horizontalAdvance(conteudo), letra.horizontalAdvance(QString(20, u'0')),
                                      letra.horizontalAdvance(QString(60, u'0'))) +
                           16);
    return campo;
}

void FormOpccoesPontos::montar() {
    m_sensor = criarCampo(u"txtSensor"_s, m_ponto.sensor);
    QLineEdit *nome = criarCampo(u"txtNomeSensor"_s, m_ponto.descricao);
    m_data = criarCampo(u"txtData"_s, m_ponto.x);
    QLineEdit *valor = criarCampo(u"txtTemperatura"_s, m_ponto.y);
    m_observacoes = new QPlainTextEdit;
    m_observacoes->setObjectName(u"txtObservacoes"_s);
    m_observacoes->setTabChangesFocus(true);
    m_observacoes->setMinimumHeight(5 * fontMetrics().lineSpacing());
    m_observacoes->installEventFilter(this);
    auto *concluir = new QPushButton(texto(u"cmdConcluir.Caption"_s, u"Concluir"_s));
    concluir->setObjectName(u"cmdConcluir"_s);
    concluir->setAccessibleName(concluir->text());
    concluir->setDefault(true);
    concluir->setToolTip(QKeySequence(Qt::CTRL | Qt::Key_Return).toString(QKeySequence::NativeText));
    connect(concluir, &QPushButton::clicked, this, &FormOpccoesPontos::cmdConcluir_Click);

    const QString nomeValor = m_membro.valor.nome.toString();
    const QString legendaSensor = texto(u"LabelSensor.Caption"_s, m_membro.legendaChave.toString());
    nome->setAccessibleName(legendaSensor);
    auto *grelha = new QGridLayout(this);
    grelha->addWidget(criarEtiqueta(u"LabelSensor"_s, legendaSensor, m_sensor), 0, 0);
    grelha->addWidget(nome, 0, 1);
    grelha->addWidget(m_sensor, 1, 1);
    grelha->addWidget(criarEtiqueta(u"lblData"_s, texto(u"lblData.Caption"_s, u"Data"_s), m_data), 2, 0);
    grelha->addWidget(m_data, 2, 1);
    grelha->addWidget(
        criarEtiqueta(nomeValor, texto(nomeValor + u".Caption", m_membro.valor.omissao.toString()), valor), 3, 0);
    grelha->addWidget(valor, 3, 1);
    grelha->addWidget(criarEtiqueta(u"lblObserv"_s, texto(u"lblObserv.Caption"_s, u"Observacoes"_s), m_observacoes), 4,
                      0, Qt::AlignTop);
    grelha->addWidget(m_observacoes, 4, 1);
    grelha->addWidget(concluir, 5, 1, Qt::AlignRight);
    grelha->setColumnStretch(1, 1);
    grelha->setRowStretch(4, 1);
    m_observacoes->setFocus();
}

// A point without its reading leaves the box empty.
void FormOpccoesPontos::CarregarDescricao() {
    Rotina(m_membro.form, "CarregarDescricao", [this] {
        m_linha = notas::procurar({m_membro.tabela, m_ponto.colunaData, m_membro.chave, m_ponto.chave,
                                   datas::lerDataHora(m_data->text()), m_ponto.colunaValor, m_ponto.eDoPonto});
        m_observacoes->setPlainText(m_linha ? notas::paraMostrar(notas::texto(*m_linha)) : QString());
        m_observacoes->moveCursor(QTextCursor::End);
    });
    m_mostrada = m_observacoes->toPlainText();
}

// Stays open when the note could not be stored, so that the text is not lost.
void FormOpccoesPontos::cmdConcluir_Click() {
    Rotina(m_membro.form, "cmdConcluir_Click", [this] {
        const QString escrita = m_observacoes->toPlainText();
        if (escrita == m_mostrada)
            return accept();
        const QString nota = notas::paraGuardar(escrita);
        const notas::Resultado resultado = m_linha ? notas::gravar(*m_linha, nota) : notas::Resultado::SemLinha;
        if (resultado != notas::Resultado::Gravada)
            return notas::avisar(resultado, m_linha.value_or(notas::Linha()));
        marcarPonto(nota != u" ");
        accept();
    });
}

void FormOpccoesPontos::marcarPonto(bool comNota) {
    if (!m_chart)
        return;
    const QString rotulo = comNota ? u"!"_s : u" "_s;
    const int serie = m_ponto.serie.toInt();
    const qsizetype indice = m_ponto.indice.toLongLong();
    if (serie >= m_chart->SeriesCount() || indice >= m_chart->Series(serie).Count())
        return;
    m_chart->Series(serie).setPointLabel(indice, rotulo);
    // A click on a limit line wrote the note of the sensor's reading of that moment: it shows there as well.
    TSerie &leituras = m_chart->Series(0);
    const double x = m_chart->Series(serie).XValue(indice);
    const auto achado = std::lower_bound(leituras.x().begin(), leituras.x().end(), x);
    if (serie > 0 && leituras.Active && achado != leituras.x().end() && *achado == x)
        leituras.setPointLabel(achado - leituras.x().begin(), rotulo);
    m_chart->actualizar();
}

bool FormOpccoesPontos::eventFilter(QObject *objecto, QEvent *evento) {
    if (objecto == m_observacoes && evento->type() == QEvent::KeyPress) {
        const auto *tecla = static_cast<QKeyEvent *>(evento);
        if (tecla->key() == Qt::Key_Return && tecla->modifiers() & Qt::ControlModifier) {
            cmdConcluir_Click();
            return true;
        }
    }
    return QDialog::eventFilter(objecto, evento);
}
