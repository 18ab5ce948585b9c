"""The parts from which make_demo_model.py builds the demonstration model."""
