#pragma once

class RegistoForms;

// Makes the views of Sens-UI channels, of inputs and outputs and of conditions known by their names.
void registarEstados(RegistoForms &forms);
