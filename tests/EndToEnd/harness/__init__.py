"""Uses a program as a person does: looks for what is on the screen by role and name, points, clicks and types."""
