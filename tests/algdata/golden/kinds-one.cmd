algdata kinds --kind sta
