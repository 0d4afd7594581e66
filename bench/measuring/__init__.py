"""What the measurements of the whole program share: desktops, stores, processes, figures."""
