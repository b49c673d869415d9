#pragma once

class RegistoForms;

// The forms of the logger buttons.
void registarLogger(RegistoForms &forms);
