algdata show good --format yaml
